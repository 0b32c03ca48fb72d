#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid to-json`.
struct ToJsonOptions {
    BatchOptions batch;       ///< the files
    ClipOptions clip;         ///< how each of them is read; its path does not matter
    std::string output = "-"; ///< "-" is standard output
    bool force = false;       ///< replace an MXF file, too
    bool referencesAsValues = false;
    bool structuralOnly = false; ///< without sets that are no structural metadata
    std::string start;           ///< InstanceUID of the set to begin with; empty for the Preface
    bool compact = false;
    bool warningsAsErrors = false;
};

/// Writes the header metadata of an MXF file as JSON.
/// @throws UsageError, IOError, BaseException  as guard() takes them. A file that was there is as
///     it was.
void toJson(const ToJsonOptions& options, Messages& messages);

} // namespace Corvid::Tool
