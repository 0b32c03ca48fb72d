#include "host/dataio/PipeSource.h"

#include "host/dataio/UnnamedFile.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <unistd.h>
#include <vector>

namespace Corvid::DataIO {

namespace {

constexpr std::size_t bufferSize = 64 * 1024;

} // namespace

PipeSource::PipeSource(FileDescriptor pipe, std::string name)
    : RandomAccessSource(std::move(name)), pipe_(std::move(pipe)) {}

PipeSource::~PipeSource() = default;

std::size_t PipeSource::readAt(std::uint64_t offset, unsigned char* to, std::size_t count) {
    count = static_cast<std::size_t>(available(offset, count));
    std::size_t got = 0;
    while (got != count) {
        const ssize_t n =
            ::pread(spool_.number(), to + got, count - got, static_cast<off_t>(offset + got));
        if (n > 0) {
            got += static_cast<std::size_t>(n);
        } else if (n == 0 || errno != EINTR) {
            throwSystemError("can't read the temporary copy of " + name(), n == 0 ? EIO : errno);
        }
    }
    return got;
}

std::uint64_t PipeSource::size() {
    spoolUpTo(std::numeric_limits<std::uint64_t>::max());
    return spooled_;
}

std::uint64_t PipeSource::available(std::uint64_t offset, std::uint64_t count) {
    const auto most = std::numeric_limits<std::uint64_t>::max();
    spoolUpTo(count > most - offset ? most : offset + count);
    return offset >= spooled_ ? 0 : std::min(count, spooled_ - offset);
}

void PipeSource::spoolUpTo(std::uint64_t end) {
    if (spooled_ >= end || ended_) {
        return;
    }
    buffer_.resize(bufferSize);
    while (!ended_ && spooled_ < end) {
        const ssize_t n = ::read(pipe_.number(), buffer_.data(), buffer_.size());
        if (n > 0) {
            keep(buffer_.data(), static_cast<std::size_t>(n));
        } else if (n == 0) {
            ended_ = true;
        } else if (errno != EINTR) {
            throwSystemError("can't read " + name(), errno);
        }
    }
}

void PipeSource::keep(const unsigned char* bytes, std::size_t count) {
    if (!spool_.isOpen()) {
        spool_ = openUnnamedFile();
    }
    std::size_t kept = 0;
    while (kept != count) {
        const ssize_t n = ::pwrite(spool_.number(), bytes + kept, count - kept,
                                   static_cast<off_t>(spooled_ + kept));
        if (n >= 0) {
            kept += static_cast<std::size_t>(n);
        } else if (errno != EINTR) {
            throwSystemError("can't write the temporary copy of " + name(), errno);
        }
    }
    spooled_ += count;
}

} // namespace Corvid::DataIO
