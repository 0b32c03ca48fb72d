#pragma once

#include "host/mxf/rewrite/Rewrite.h"
#include "host/mxf/rewrite/disk/FileSystem.h"

#include <functional>

namespace Corvid::mxf {

/// Gets how many bytes of how many are there; may throw to give up.
using CopyProgress = std::function<void(std::uint64_t done, std::uint64_t all)>;

/// Writes a changed copy of a file under another name. The name has the whole new file or what it
/// had before: a temporary file beside it takes it over when all is on the disk.
/// @param planned  what the status of the file was when the rewrite was planned.
/// @throws InvalidArgument  the file has changed since the rewrite was planned.
/// @throws InvalidFormat    an earlier change of it was not finished.
/// @throws IOError          reading or writing fails; then only a temporary file may be left.
CORVID_EXPORT void writeNewFile(FileSystem& system, const std::string& from, const std::string& to,
                                const Rewrite& rewrite, const FileStatus& planned,
                                const CopyProgress& progress = {});

/// Puts a changed copy of a file in its place, with the same owner, mode, access lists and extended
/// attributes. Symbolic links are followed.
/// @throws InvalidArgument  the file has changed since the rewrite was planned, or has several
///                          hard links, of which the others would keep the old file.
/// @throws IOError          as writeNewFile(), or an attribute can't be carried over.
CORVID_EXPORT void replaceFile(FileSystem& system, const std::string& path, const Rewrite& rewrite,
                               const FileStatus& planned, bool breakLinks = false,
                               const CopyProgress& progress = {});

} // namespace Corvid::mxf
