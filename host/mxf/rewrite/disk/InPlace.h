#pragma once

#include "host/mxf/rewrite/Rewrite.h"
#include "host/mxf/rewrite/disk/FileSystem.h"

namespace Corvid::mxf {

/// Changes a file where it is. Before its first byte changes, what brings it back is on the disk.
///
/// Where the process or the machine dies meanwhile, recover() finishes it one way or the other;
/// where a write fails, the file is brought back at once. A program that opens the file meanwhile
/// waits for the end, where the system can let it wait.
/// @param path     symbolic links are followed.
/// @param rewrite  of inPlaceForm().
/// @param planned  what the file's status was when the rewrite was planned.
/// @param recoveryFolder  where what brings the file back is meanwhile, without symbolic links;
///                        empty for beside the file. Then only a pointer to it is there.
/// @return nothing where it is done. Where the file system does not insert blocks as the rewrite
///         asks, the status of the file, in which no byte has changed: some file systems give it
///         another time all the same.
/// @throws InvalidFormat    an earlier change was not finished.
/// @throws InvalidArgument  the file has changed since the rewrite was planned.
/// @throws LimitExceeded    the file has too many holes to insert blocks before them.
/// @throws IOError          reading or writing fails; the message says so where the file could not
///                          be brought back.
CORVID_EXPORT std::optional<FileStatus> rewriteInPlace(
    FileSystem& system, const std::string& path, const Rewrite& rewrite, const FileStatus& planned,
    const std::string& recoveryFolder = std::string());

/// Whether a change of the file was not finished.
CORVID_EXPORT bool needsRecovery(FileSystem& system, const std::string& path);

/// @throws InvalidFormat  a change of the file was not finished.
CORVID_EXPORT void requireFinished(FileSystem& system, const std::string& path);

/// Refuses an open file that is not as it was when a change of it was planned, or no longer has
/// its name.
/// @throws InvalidArgument  it has changed.
void requireAsPlanned(const OpenFile& file, const std::string& path, const FileStatus& planned);

/// Which state recover() makes.
enum class RecoveryGoal : unsigned char {
    before, ///< as the file was
    after,  ///< as it was to be
};

/// Finishes a change that was not finished. May itself be interrupted and done again.
/// @return false where nothing was to be done.
/// @throws InvalidFormat  the recovery file is damaged, or of another file; then nothing changes.
/// @throws IOError        reading or writing fails.
CORVID_EXPORT bool recover(FileSystem& system, const std::string& path, RecoveryGoal goal);

} // namespace Corvid::mxf
