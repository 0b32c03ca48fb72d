#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/batch/FileTask.h"

namespace Corvid::Tool {

/// The other end of a process that works on files, one after the other.
struct WorkerPipes {
    int requests;  ///< to read the size of a path and the path from
    int responses; ///< to write frames to
};

/// Works until there are no more requests. In a process of its own, which it ends.
/// @param colours  whether messages are coloured.
[[noreturn]] void workOnFiles(const BatchOptions& options, const BatchWork& work, bool colours,
                              WorkerPipes pipes);

} // namespace Corvid::Tool
