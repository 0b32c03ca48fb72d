#include "host/dataio/FileSource.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <unistd.h>

namespace Corvid::DataIO {

static_assert(sizeof(off_t) == 8, "files beyond 2 GiB need offsets of 64 bits");

FileSource::FileSource(FileDescriptor file, std::string name)
    : RandomAccessSource(std::move(name)), file_(std::move(file)) {
    // Unlike the size in the file's status, this also holds for a block device.
    const off_t end = ::lseek(file_.number(), 0, SEEK_END);
    if (end < 0) {
        throwSystemError("can't determine the size of " + this->name(), errno);
    }
    size_ = static_cast<std::uint64_t>(end);
}

std::size_t FileSource::readAt(std::uint64_t offset, unsigned char* to, std::size_t count) {
    if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) - count) {
        return 0;
    }
    std::size_t got = 0;
    while (got != count) {
        const ssize_t n =
            ::pread(file_.number(), to + got, count - got, static_cast<off_t>(offset + got));
        if (n == 0) {
            break;
        }
        if (n > 0) {
            got += static_cast<std::size_t>(n);
        } else if (errno != EINTR) {
            throwSystemError("can't read " + name(), errno);
        }
    }
    return got;
}

} // namespace Corvid::DataIO
