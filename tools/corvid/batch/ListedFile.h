#pragma once

#include "tools/corvid/batch/FileTask.h"

#include <cstdint>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>

namespace Corvid::Tool {

/// What shows whether a file has changed.
struct FileStamp {
    std::uint64_t size = 0;   ///< in bytes
    std::int64_t mtimeNs = 0; ///< time of its last change, from 1970, in nanoseconds

    bool operator==(const FileStamp& other) const noexcept {
        return size == other.size && mtimeNs == other.mtimeNs;
    }
};

/// What an earlier command has done.
struct DoneFile {
    FileStatus status;
    std::optional<RemoteStamp> remote; ///< of a file on a server, as it was then
};

/// One of many files, or a folder that can't be read.
struct ListedFile {
    std::string path;
    std::string error = {};              ///< why there is nothing to do; empty for a file
    std::optional<FileStamp> stamp = {}; ///< as it was before the work, where somebody asks
    std::string options = {};            ///< hash of all else that changes its result, likewise
    std::optional<DoneFile> done = {};   ///< of a file on a server that may have changed since
};

/// What a file or folder is, whatever its path.
struct FileIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FileIdentity& other) const noexcept {
        return device == other.device && inode == other.inode;
    }
};

/// Nothing where there is no such file; errno says why.
inline std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0
               ? std::optional(FileIdentity{status.st_dev, status.st_ino})
               : std::nullopt;
}

} // namespace Corvid::Tool
