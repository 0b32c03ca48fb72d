#pragma once

#include <string>
#include <string_view>

namespace Corvid::Tool {

/// Text for a terminal on one line: every control character becomes "\x1b" and the like, and one
/// that ends a line or turns the direction of text "\u202e", so that neither a file's name nor its
/// contents can drive the terminal, break the line or show its characters in another order.
/// @param text  UTF-8.
std::string printable(std::string_view text);

} // namespace Corvid::Tool
