#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvid::Fuzzing {

/// What results for people must be: UTF-8 without control characters but line ends, and without
/// characters that turn the direction of text. Ends the search otherwise.
/// @param what  names the text.
void expectReadable(const std::string& text, const char* what);

/// What results for programs must be: JSON, which can't do without UTF-8.
void expectJson(const std::string& text, const char* what);

/// Ends the search where a result is out of proportion to its input.
/// @param times, constant  the most bytes for each byte of the input, and beside them.
void expectBounded(const std::string& text, std::size_t inputSize, std::size_t times,
                   std::size_t constant, const char* what);

/// The text without the sequences that colour it on a terminal.
std::string withoutColours(std::string_view text);

} // namespace Corvid::Fuzzing
