#pragma once

#include <string>
#include <vector>

namespace Corvid::Tool {

/// Items on one line; empty ones are left out.
std::string joined(const std::vector<std::string>& items, const char* between);

/// Items in lines of up to 80 characters; no item is broken, so a long one may stick out.
/// @param between  follows each item but the last; blanks at its end fall away at the end of
/// a
///     line.
/// @param indent  blanks before each line.
std::string wrapped(const std::vector<std::string>& items, const std::string& between,
                    std::size_t indent);

/// A text in such lines, broken between words.
std::string wrappedWords(const std::string& text, std::size_t indent);

} // namespace Corvid::Tool
