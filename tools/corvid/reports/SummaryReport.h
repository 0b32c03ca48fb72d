#pragma once

#include <string>

namespace Corvid::Inspection {
struct Summary;
}

namespace Corvid::Tool {

class WarningLog;

/// What the text for people shows.
struct SummaryText {
    bool colours = false;  ///< whether headings and oddities are coloured
    bool warnings = false; ///< whether warnings are listed, not counted
    bool labels = false;   ///< whether codings and containers are shown with their labels
    bool all = false;      ///< whether partitions, packages, descriptors and sets follow
};

/// The most lines of the text where it does not list or show all.
constexpr std::size_t mostLines = 25;

/// How JSON is laid out.
enum class JsonLayout : unsigned char {
    indented, ///< two blanks for each level
    line,     ///< all of it on one line
};

/// For people: aligned, short.
/// @param warnings  about the file.
std::string toText(const Inspection::Summary& summary, const WarningLog& warnings,
                   const SummaryText& what);

/// For programs: JSON with the keys that docs/info.md names.
std::string toJson(const Inspection::Summary& summary, const WarningLog& warnings,
                   JsonLayout layout = JsonLayout::indented);

/// The same for a file of which there is no summary.
/// @param error  why there is none.
std::string failureJson(const std::string& file, const WarningLog& warnings,
                        const std::string& error, JsonLayout layout = JsonLayout::indented);

} // namespace Corvid::Tool
