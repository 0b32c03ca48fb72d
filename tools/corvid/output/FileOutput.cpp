#include "tools/corvid/output/FileOutput.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Corvid::Tool {

namespace {

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

/// As far as the system lets it: only root gives files away. Set-user and set-group bits were
/// meant for what was in the file, and stay with it.
void takeOver(int file, const struct stat& replaced) {
    mode_t permissions = replaced.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    constexpr auto sameOwner = static_cast<uid_t>(-1);
    if (::fchown(file, replaced.st_uid, replaced.st_gid) != 0 &&
        ::fchown(file, sameOwner, replaced.st_gid) != 0) {
        // What the group might do was meant for another group.
        permissions = (permissions & ~static_cast<mode_t>(S_IRWXG)) | (permissions & S_IRWXO) << 3;
    }
    // A file system without permissions has its own.
    static_cast<void>(::fchmod(file, permissions));
}

} // namespace

struct FileOutput::Target {
    std::filesystem::path path;
    std::optional<struct stat> replaced;

    explicit Target(const std::string& given) {
        std::error_code error;
        path = std::filesystem::canonical(given, error);
        if (error) {
            path = behindLinks(given); // not there yet
            return;
        }
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), W_OK) != 0) {
            throw OutputError(given, "can't write", errno);
        }
        replaced = status;
    }
};

FileOutput::FileOutput(const std::string& path, TemporaryFile::Naming naming)
    : FileOutput(path, Target(path), naming) {}

FileOutput::FileOutput(const std::string& path, const Target& target, TemporaryFile::Naming naming)
    // Until it has the permissions of the file that it replaces, nobody else reads it.
    : FileOutput(path, target,
                 std::make_unique<TemporaryFile>(target.path.parent_path(),
                                                 target.replaced ? 0600 : 0666, path, naming)) {}

FileOutput::FileOutput(const std::string& path, const Target& target,
                       std::unique_ptr<TemporaryFile> file)
    : DescriptorOutput(file->number(), path), target_(target.path.string()),
      temporary_(std::move(file)) {
    if (target.replaced) {
        takeOver(temporary_->number(), *target.replaced);
    }
}

void FileOutput::commit() {
    DescriptorOutput::commit();
    temporary_->moveTo(target_);
    temporary_.reset();
}

std::optional<struct stat> FileOutput::status() const {
    struct stat status {};
    return ::stat(target_.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

} // namespace Corvid::Tool
