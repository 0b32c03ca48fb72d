#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Corvid::Tool {

/// The blanks of a level.
constexpr int jsonIndent = 2;

/// JSON as verbs print it: indented, without a line break at the end. Names of files need not be
/// UTF-8, JSON must be: a byte that is not becomes U+FFFD. What a terminal should not show is
/// escaped.
std::string jsonText(const nlohmann::ordered_json& json);
/// The same on one line.
std::string jsonLine(const nlohmann::ordered_json& json);

} // namespace Corvid::Tool
