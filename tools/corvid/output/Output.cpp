#include "tools/corvid/output/Output.h"

#include "tools/corvid/output/FileOutput.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

/// The number of the open file that a name such as /dev/stdout stands for.
std::optional<int> descriptorOf(std::string_view path) {
    if (path == "/dev/stdout") {
        return STDOUT_FILENO;
    }
    if (path == "/dev/stderr") {
        return STDERR_FILENO;
    }
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (path.substr(0, folder.size()) == folder) {
            int number = -1;
            const char* const end = path.data() + path.size();
            const auto [stop, error] = std::from_chars(path.data() + folder.size(), end, number);
            return error == std::errc() && stop == end && number >= 0 ? std::optional(number)
                                                                      : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace

OutputError::OutputError(std::string target, const std::string& what, int errorNumber)
    : IOError(what + " " + target + ": " + std::generic_category().message(errorNumber),
              CORVID_HERE),
      target_(std::move(target)), closedPipe_(errorNumber == EPIPE),
      diskFull_(errorNumber == ENOSPC || errorNumber == EDQUOT) {}

OutputError::~OutputError() = default;

bool Output::goesTo(const std::string& path) const {
    const auto mine = status();
    // What is written to a terminal or a pipe is not what is read from it.
    if (!mine || !(S_ISREG(mine->st_mode) || S_ISBLK(mine->st_mode))) {
        return false;
    }
    struct stat other {};
    const bool isThere =
        path == "-" ? ::fstat(STDIN_FILENO, &other) == 0 : ::stat(path.c_str(), &other) == 0;
    return isThere && mine->st_dev == other.st_dev && mine->st_ino == other.st_ino;
}

std::unique_ptr<Output> Output::open(const std::string& path) {
    if (path == "-") {
        return std::make_unique<DescriptorOutput>(STDOUT_FILENO, "standard output");
    }
    if (const auto open = descriptorOf(path)) {
        // Opened by its name, a file that a shell appends to would be replaced.
        const int number = ::fcntl(*open, F_DUPFD_CLOEXEC, 0);
        if (number < 0) {
            throw OutputError(path, "can't write", errno);
        }
        return std::make_unique<DescriptorOutput>(DataIO::FileDescriptor::owning(number), path);
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

void DescriptorOutput::commit() {
    // Network file systems say when a file is closed that bytes did not arrive.
    const int number = ::dup(file_.number());
    if (number < 0 || ::close(number) != 0) {
        throw OutputError(name_, "can't write", errno);
    }
}

std::optional<struct stat> DescriptorOutput::status() const {
    struct stat status {};
    return ::fstat(file_.number(), &status) == 0 ? std::optional(status) : std::nullopt;
}

void writeWhole(Output& output, const std::string& text) {
    if (!text.empty()) {
        output.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
        output.commit();
    }
}

void printText(const std::string& text) {
    DescriptorOutput output(STDOUT_FILENO, "standard output");
    writeWhole(output, text);
}

} // namespace Corvid::Tool
