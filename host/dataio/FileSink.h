#pragma once

#include "host/base/Templates.h"
#include "host/dataio/DataSink.h"

#include <string>

namespace Corvid::DataIO {

/// A file that is written beside its target and takes its place when it is complete. Until then the
/// target is as it was. Small writes are collected.
class CORVID_EXPORT FileSink : public DataSink {
public:
    /// @param path  of a file, also one that is not there yet; a link to a file stays one.
    /// @throws IOError  nothing can be written beside it, or it is no file that can be replaced.
    /// @throws InvalidArgument  the path is empty.
    explicit FileSink(const std::string& path);
    FileSink(const FileSink&) = delete;
    FileSink& operator=(const FileSink&) = delete;
    /// Removes what has been written where commit() has not been called.
    ~FileSink() override;

    /// @throws InvalidArgument  commit() was called.
    void write(const unsigned char* bytes, std::size_t count) override;

    /// Gives the file its name, when its bytes are on the disk. To be called once, at the end.
    /// @throws IOError  it can't be done; the target is as it was.
    /// @throws InvalidArgument  it was called before.
    void commit();

private:
    class Unfinished;
    Templates::auto_ptr<Unfinished> file_;
};

} // namespace Corvid::DataIO
