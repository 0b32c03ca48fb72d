#pragma once

#include "tools/corvid/input/Clip.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid get`.
struct GetOptions {
    ClipOptions clip;
    std::vector<std::string> paths; ///< see inspection/query/ParsePath.h
    bool json = false;
    bool warningsAsErrors = false; ///< after all is printed
};

/// Prints on standard output the values that paths lead to, one on a line.
/// @throws UsageError  a path is none.
/// @throws EndedWith   one leads to no value.
/// @throws IOError, BaseException  as guard() takes them.
void get(const GetOptions& options, Messages& messages);

} // namespace Corvid::Tool
