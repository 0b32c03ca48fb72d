#pragma once

#include "host/base/Templates.h"
#include "host/dataio/FileDescriptor.h"
#include "host/dataio/RandomAccessSource.h"

namespace Corvid::DataIO {

/// A pipe, or whatever else is read from front to back only. What has passed is kept in a temporary
/// file that has no name and goes with the source.
///
/// The pipe is read only as far as the bytes that are asked for, and to its end by size(). The
/// temporary file is in the folder that the environment variable TMPDIR names, else in /tmp.
class CORVID_EXPORT PipeSource : public RandomAccessSource {
public:
    /// @param pipe  open for reading; nothing of it has been read.
    /// @param name  for messages.
    PipeSource(FileDescriptor pipe, std::string name);
    ~PipeSource() override;

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override;
    std::uint64_t size() override;
    std::uint64_t available(std::uint64_t offset, std::uint64_t count) override;

private:
    /// Reads the pipe until this many bytes have passed or it ends.
    void spoolUpTo(std::uint64_t end);
    void keep(const unsigned char* bytes, std::size_t count);

    FileDescriptor pipe_;
    FileDescriptor spool_;
    std::uint64_t spooled_ = 0; ///< bytes that have passed
    bool ended_ = false;
    Templates::vector<unsigned char> buffer_;
};

} // namespace Corvid::DataIO
