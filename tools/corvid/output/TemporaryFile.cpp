#include "tools/corvid/output/TemporaryFile.h"

#include "tools/corvid/output/Output.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace Corvid::Tool {

namespace {

using DataIO::FileDescriptor;

FileDescriptor openNameless(const std::filesystem::path& folder, mode_t permissions) {
#ifdef O_TMPFILE
    return FileDescriptor::owning(
        ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, permissions));
#else
    static_cast<void>(folder);
    static_cast<void>(permissions);
    return {};
#endif
}

bool giveName(const FileDescriptor& file, const std::filesystem::path& folder, HiddenName& name) {
    const std::string open = "/proc/self/fd/" + std::to_string(file.number());
    return name.give(folder, [&open](const char* path) {
        return ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
    });
}

/// File systems, systems without /proc and sandboxes refuse one step or the other, so that only
/// trying shows it; with a file of its own, because a file that had a name gets no other.
bool canNameLate(const std::filesystem::path& folder) {
    const FileDescriptor file = openNameless(folder, S_IRUSR | S_IWUSR);
    HiddenName name;
    return file.isOpen() && giveName(file, folder, name);
}

/// Waits until the disk has it, where the file system can say so.
bool synchronise(const FileDescriptor& file) {
    return ::fsync(file.number()) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

} // namespace

TemporaryFile::TemporaryFile(std::filesystem::path folder, mode_t permissions, std::string name,
                             Naming naming)
    : folder_(folder.empty() ? "." : std::move(folder)), name_(std::move(name)) {
    if (naming == Naming::late && canNameLate(folder_)) {
        file_ = openNameless(folder_, permissions);
    } else {
        hidden_.give(folder_, [&](const char* path) {
            file_ = FileDescriptor::owning(
                ::open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, permissions));
            return file_.isOpen();
        });
    }
    if (!file_.isOpen()) {
        throw OutputError(name_, "can't write", errno);
    }
}

void TemporaryFile::moveTo(const std::string& target) {
    const auto require = [this](bool isDone) {
        if (!isDone) {
            throw OutputError(name_, "can't write", errno);
        }
    };
    // Else the name could come to the disk before the bytes, and what was there be lost for nothing
    // where the power fails.
    require(synchronise(file_));
    {
        const SignalsHeldBack held; // so that none finds it with its hidden name
        require(hidden_.isGiven() || giveName(file_, folder_, hidden_));
        require(hidden_.changeTo(target));
    }
    const auto folder =
        FileDescriptor::owning(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder may be one to write to, but not to read.
    require(!folder.isOpen() || synchronise(folder));
}

} // namespace Corvid::Tool
