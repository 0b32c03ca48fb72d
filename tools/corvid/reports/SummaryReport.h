#pragma once

#include <string>

namespace Corvid::Inspection {
struct Summary;
}

namespace Corvid::Tool {

class WarningLog;

/// For people: aligned, short.
/// @param colours  whether headings and oddities are coloured.
std::string toText(const Inspection::Summary& summary, bool colours);

/// For programs: JSON with the keys that docs/info.md names.
/// @param warnings  about the file.
std::string toJson(const Inspection::Summary& summary, const WarningLog& warnings);

/// The same for a file of which there is no summary.
/// @param error  why there is none.
std::string failureJson(const std::string& file, const WarningLog& warnings,
                        const std::string& error);

} // namespace Corvid::Tool
