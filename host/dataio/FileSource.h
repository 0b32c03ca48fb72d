#pragma once

#include "host/dataio/FileDescriptor.h"
#include "host/dataio/RandomAccessSource.h"

namespace Corvid::DataIO {

/// A file of any size that can be read anywhere. It is never read as a whole.
class CORVID_EXPORT FileSource : public RandomAccessSource {
public:
    /// @param file  a regular file or a block device, open for reading.
    /// @param name  for messages.
    /// @throws IOError  its size can't be had.
    FileSource(FileDescriptor file, std::string name);

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override;
    /// The size when the file was opened.
    std::uint64_t size() override { return size_; }

private:
    FileDescriptor file_;
    std::uint64_t size_;
};

} // namespace Corvid::DataIO
