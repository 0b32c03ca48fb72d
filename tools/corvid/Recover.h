#pragma once

#include "host/mxf/rewrite/disk/InPlace.h"

#include <string>

namespace Corvid::Tool {

class Messages;

/// The options of `corvid recover`.
struct RecoverOptions {
    std::string clip;
    mxf::RecoveryGoal goal = mxf::RecoveryGoal::before;
    std::string from; ///< what `corvid apply --undo` wrote; empty for an edit that was interrupted
};

/// Finishes an edit that was interrupted, or takes back one that was finished.
/// @throws UsageError, IOError, BaseException  as guard() takes them.
void recover(const RecoverOptions& options, Messages& messages);

} // namespace Corvid::Tool
