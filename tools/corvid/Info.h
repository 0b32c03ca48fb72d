#pragma once

#include "tools/corvid/input/Clip.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid info`.
struct InfoOptions {
    ClipOptions clip;
    bool json = false;
    bool warningsAsErrors = false; ///< after all is printed
    bool colours = false;          ///< no part of JSON
};

/// Prints on standard output what an MXF file holds.
/// @throws IOError, BaseException  as guard() takes them.
void info(const InfoOptions& options, Messages& messages);

} // namespace Corvid::Tool
