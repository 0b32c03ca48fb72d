#pragma once

#include <string>
#include <string_view>

namespace Corvid::Tool {

/// Text for a terminal on one line: every control character becomes "\x1b" and the like, so that
/// neither a file's name nor what stands in it can drive the terminal or break the line.
/// @param text  UTF-8.
std::string printable(std::string_view text);

} // namespace Corvid::Tool
