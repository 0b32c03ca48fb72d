#include "tools/corvid/batch/NameList.h"

#include "host/base/Exceptions.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

DataIO::FileDescriptor openList(const std::string& path, const std::string& name) {
    if (path == "-") {
        return DataIO::FileDescriptor::borrowing(STDIN_FILENO);
    }
    const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (number < 0) {
        DataIO::throwSystemError("can't open the list " + name, errno);
    }
    return DataIO::FileDescriptor::owning(number);
}

} // namespace

NameList::NameList(const std::string& path, bool hasZeros)
    : name_(path == "-" ? "standard input" : path), file_(openList(path, name_)),
      end_(hasZeros ? '\0' : '\n') {}

bool NameList::isLive() const {
    struct stat status {};
    return ::fstat(file_.number(), &status) != 0 || !S_ISREG(status.st_mode);
}

void NameList::readMore() {
    constexpr std::size_t atOnce = 65'536;
    bytes_.erase(0, begin_);
    seen_ -= begin_;
    begin_ = 0;
    const std::size_t size = bytes_.size();
    bytes_.resize(size + atOnce);
    const ssize_t count = ::read(file_.number(), bytes_.data() + size, atOnce);
    const int error = errno;
    bytes_.resize(size + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count < 0 && error != EINTR && error != EAGAIN) {
        DataIO::throwSystemError("can't read the list " + name_, error);
    }
    atEnd_ = count == 0;
}

std::optional<std::string> NameList::next() {
    for (;;) {
        std::size_t end = bytes_.find(end_, seen_);
        seen_ = end == std::string::npos ? bytes_.size() : end;
        if (seen_ - begin_ > longestPath) {
            throw Exceptions::LimitExceeded("the list " + name_ + " has a name of more than " +
                                                std::to_string(longestPath) + " bytes",
                                            CORVID_HERE);
        }
        if (end == std::string::npos && (!atEnd_ || begin_ == bytes_.size())) {
            return std::nullopt;
        }
        std::string name = bytes_.substr(begin_, seen_ - begin_);
        begin_ = end == std::string::npos ? seen_ : ++seen_;
        if (!name.empty()) {
            return name;
        }
    }
}

} // namespace Corvid::Tool
