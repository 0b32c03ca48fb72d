#include "tools/corvid/FileOutput.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Corvid::Tool {

namespace {

constexpr int endingSignals[] = {SIGHUP, SIGINT, SIGTERM};

// What a signal handler may touch: the name of the one unfinished file, empty where there is none.
char unfinished[PATH_MAX];
volatile std::sig_atomic_t hasUnfinished = 0;

extern "C" void removeUnfinished(int signalNumber) {
    if (hasUnfinished != 0) {
        ::unlink(unfinished);
    }
    // SA_RESETHAND has put the default back, which ends the process in the way of this signal.
    ::raise(signalNumber);
}

void removeOnSignal(const std::string& path) {
    if (path.size() >= sizeof unfinished) {
        return;
    }
    std::memcpy(unfinished, path.c_str(), path.size() + 1);
    hasUnfinished = 1;
    struct sigaction action {};
    action.sa_handler = removeUnfinished;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int number : endingSignals) {
        struct sigaction old {};
        // What the caller has told to ignore, as nohup does, stays ignored.
        if (::sigaction(number, nullptr, &old) == 0 && old.sa_handler == SIG_DFL) {
            ::sigaction(number, &action, nullptr);
        }
    }
}

/// What a symbolic link leads to in the end, whether it is there or not.
std::filesystem::path behindLinks(const std::string& given) {
    constexpr int most = 40; // as many as Linux follows
    std::filesystem::path path = given;
    std::error_code error;
    for (int i = 0; std::filesystem::is_symlink(path, error); ++i) {
        if (i == most) {
            throw OutputError(given, "can't write", ELOOP);
        }
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    }
    return path;
}

mode_t permissionsOfNewFiles() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return static_cast<mode_t>(0666) & ~mask;
}

} // namespace

struct FileOutput::Target {
    std::string path;
    mode_t permissions;

    explicit Target(const std::string& given) : path(given), permissions(permissionsOfNewFiles()) {
        std::error_code error;
        const auto real = std::filesystem::canonical(given, error);
        if (error) {
            path = behindLinks(given).string(); // not there yet
            return;
        }
        path = real.string();
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), W_OK) != 0) {
            throw OutputError(given, "can't write", errno);
        }
        permissions = status.st_mode & static_cast<mode_t>(07777);
    }
};

struct FileOutput::Temporary {
    std::string path;
    DataIO::FileDescriptor file;

    Temporary(const std::string& given, const Target& target) {
        const auto name = std::filesystem::path(target.path);
        path =
            (name.parent_path() / (".corvid-" + std::to_string(::getpid()) + "-XXXXXX")).string();
        const int number = ::mkostemp(path.data(), O_CLOEXEC);
        if (number < 0) {
            throw OutputError(given, "can't write", errno);
        }
        file = DataIO::FileDescriptor::owning(number);
        // A file system without permissions has its own.
        static_cast<void>(::fchmod(number, target.permissions));
    }
};

FileOutput::FileOutput(const std::string& path) : FileOutput(path, Target(path)) {}

FileOutput::FileOutput(const std::string& path, const Target& target)
    : FileOutput(path, target, Temporary(path, target)) {}

FileOutput::FileOutput(const std::string& path, Target target, Temporary temporary)
    : DescriptorOutput(std::move(temporary.file), path), target_(std::move(target.path)),
      temporary_(std::move(temporary.path)) {
    removeOnSignal(temporary_);
}

FileOutput::~FileOutput() {
    if (!temporary_.empty()) {
        hasUnfinished = 0;
        ::unlink(temporary_.c_str());
    }
}

void FileOutput::commit() {
    close();
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        throw OutputError(name(), "can't write", errno);
    }
    hasUnfinished = 0;
    temporary_.clear();
}

bool FileOutput::replaces(const std::string& path) const {
    struct stat mine {};
    struct stat other {};
    const bool otherIsThere =
        path == "-" ? ::fstat(STDIN_FILENO, &other) == 0 : ::stat(path.c_str(), &other) == 0;
    return otherIsThere && ::stat(target_.c_str(), &mine) == 0 && mine.st_dev == other.st_dev &&
           mine.st_ino == other.st_ino;
}

} // namespace Corvid::Tool
