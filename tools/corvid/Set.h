#pragma once

#include "tools/corvid/EditClip.h"

namespace Corvid::Tool {

/// The options of `corvid set`. Without another file the clip itself is edited.
struct SetOptions : ClipEdit {
    std::vector<std::string> assignments; ///< see inspection/query/ParsePath.h
    bool all = false;                     ///< a path may lead to several values
};

/// Changes single values of the header metadata of a clip.
/// @throws UsageError  an assignment is none.
/// @throws EndedWith, IOError, BaseException  as editClip().
void set(const SetOptions& options, Messages& messages);

} // namespace Corvid::Tool
