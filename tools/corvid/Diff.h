#pragma once

#include "tools/corvid/input/Clip.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid diff`.
struct DiffOptions {
    std::string before; ///< an MXF file or a document; "-" is standard input
    std::string after;  ///< likewise
    ClipOptions clips;  ///< how MXF files are read; without path
    bool json = false;
};

/// Prints on standard output what makes the metadata of one file that of another.
/// @throws EndedWith  they differ, or one of them can't be read.
/// @throws UsageError, IOError, BaseException  as guard() takes them.
void diff(const DiffOptions& options, Messages& messages);

} // namespace Corvid::Tool
