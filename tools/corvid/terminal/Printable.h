#pragma once

#include <string>
#include <string_view>

namespace Corvid::Tool {

/// Text for a terminal on one line: a control character, or a byte that is not UTF-8, becomes
/// "\x1b" and the like; a character that ends a line, turns the direction of text or can't be seen
/// "\u202e" or "\U000e0041". So neither a file's name nor its contents can drive the terminal,
/// break the line, show its characters in another order or hide some of them.
/// @param text  UTF-8, or what should be.
std::string printable(std::string_view text);

/// JSON in which no string has any of those characters: they are escaped the way of JSON, so that
/// programs read the same values.
/// @param json  UTF-8; what is outside of strings may have lines.
std::string printableJson(std::string_view json);

} // namespace Corvid::Tool
