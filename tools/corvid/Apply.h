#pragma once

#include "tools/corvid/EditClip.h"

namespace Corvid::Tool {

/// The options of `corvid apply`.
struct ApplyOptions : ClipEdit {
    std::string document; ///< "-" is standard input
};

/// Makes the header metadata of a clip what a document says.
/// @throws  as editClip().
void apply(const ApplyOptions& options, Messages& messages);

} // namespace Corvid::Tool
