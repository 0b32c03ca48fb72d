#pragma once

#include "editing/apply/ClipEditor.h"
#include "host/mxf/rewrite/disk/FileSystem.h"
#include "host/mxf/rewrite/disk/NewFile.h"

namespace Corvid::Editing {

/// How an edit reaches the disk.
enum class EditWay : unsigned char {
    nothing, ///< there is nothing to write
    inPlace, ///< bytes of the clip change; where it becomes longer, blocks are inserted or its end
             ///< is written anew
    replace, ///< a copy with room for the metadata takes the place of the clip
    newFile, ///< an edited copy is written under another name
};

/// What becomes of an edited clip.
struct EditTarget {
    std::string newFile;         ///< where an edited copy goes; empty to change the clip itself
    bool breaksLinks = false;    ///< a clip with several hard links may be replaced
    bool preservesTimes = false; ///< the clip keeps its time of modification
    /// A folder for what brings the clip back if the edit is interrupted; empty for that of the
    /// clip.
    std::string recoveryFolder;
    std::string undo; ///< a file that gets what undoes the edit; empty for none
};

/// The size of the blocks that the file system can insert into a clip, for EditOptions; 1 where it
/// can't.
/// @throws IOError  the clip can't be opened.
CORVID_EDITING_EXPORT std::uint64_t blockSizeOf(mxf::FileSystem& system, const std::string& clip);

/// How a plan will reach the disk. A file system may refuse to insert blocks all the same; then a
/// copy takes the place of the clip.
/// @param source  the clip. Borrowed.
CORVID_EDITING_EXPORT EditWay wayOf(mxf::FileSystem& system, const std::string& clip,
                                    DataIO::RandomAccessSource& source, const EditPlan& plan,
                                    const EditTarget& target);

/// Does what was planned. The clip is as before or changed as a whole; where the process dies
/// meanwhile, mxf::recover() sees to that.
/// @param source   the clip. It is closed before anything is written: where the system says whether
///                 a file is open elsewhere, it counts this too.
/// @param planned  the clip's status before it was read for the plan.
/// @throws InvalidArgument  the clip has changed since; the edit would break hard links; or what
///                          undoes it is wanted, but the clip becomes longer.
/// @throws InvalidFormat, IOError  as mxf::rewriteInPlace() and mxf::writeNewFile().
/// @return how it was done.
CORVID_EDITING_EXPORT EditWay carryOut(mxf::FileSystem& system, const std::string& clip,
                                       Templates::auto_ptr<DataIO::RandomAccessSource> source,
                                       const EditPlan& plan, const mxf::FileStatus& planned,
                                       const EditTarget& target,
                                       const mxf::CopyProgress& progress = {});

/// Takes a finished edit back.
/// @param undo  the file that the edit wrote for this.
/// @throws InvalidFormat  the clip is another one or has changed since, or the file is of an edit
///                        that made it longer; then nothing changes.
/// @throws IOError        reading or writing fails.
CORVID_EDITING_EXPORT void undoEdit(mxf::FileSystem& system, const std::string& clip,
                                    const std::string& undo);

} // namespace Corvid::Editing
