#include "tools/corvid/Output.h"

#include "tools/corvid/FileOutput.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Corvid::Tool {

OutputError::OutputError(std::string target, const std::string& what, int errorNumber)
    : IOError(what + " " + target + ": " + std::generic_category().message(errorNumber),
              CORVID_HERE),
      target_(std::move(target)), closedPipe_(errorNumber == EPIPE) {}

OutputError::~OutputError() = default;

std::unique_ptr<Output> Output::open(const std::string& path) {
    if (path == "-") {
        return std::make_unique<DescriptorOutput>(STDOUT_FILENO, "standard output");
    }
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        if (S_ISDIR(status.st_mode)) {
            throw OutputError(path, "can't write", EISDIR);
        }
        const int number = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        if (number < 0) {
            throw OutputError(path, "can't write", errno);
        }
        return std::make_unique<DescriptorOutput>(DataIO::FileDescriptor::owning(number), path);
    }
    return std::make_unique<FileOutput>(path);
}

void DescriptorOutput::write(const unsigned char* bytes, std::size_t count) {
    // Some systems refuse to write more than 2 GiB at a time.
    constexpr std::size_t atMost = 1U << 30;
    while (count != 0) {
        const ssize_t written = ::write(file_.number(), bytes, std::min(count, atMost));
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            throw OutputError(name_, "can't write", errno);
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

bool DescriptorOutput::isTerminal() const noexcept { return ::isatty(file_.number()) != 0; }

void DescriptorOutput::close() {
    // Whatever close() says, the number is free afterwards; network file systems tell here that the
    // bytes did not arrive.
    const int number = ::dup(file_.number());
    if (number < 0 || ::close(number) != 0) {
        throw OutputError(name_, "can't write", errno);
    }
    file_ = DataIO::FileDescriptor();
}

void printText(const std::string& text) {
    DescriptorOutput(STDOUT_FILENO, "standard output")
        .write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

} // namespace Corvid::Tool
