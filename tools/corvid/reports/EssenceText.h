#pragma once

#include "tools/corvid/reports/SummaryReport.h"

#include <vector>

namespace Corvid::Tool {

/// "EBU bmx 1.7.0": who wrote the file last, as far as it says.
std::string writerText(const Inspection::Summary& summary);

/// Lines with a name in front of the first: they stay together where there are too many. Not
/// printable() yet.
struct SummaryBlock {
    std::string name;
    std::vector<std::string> lines;
    bool isVital = false; ///< it is shown whatever else is not
};

/// "MXF OP1a, AS-11 UK DPP HD 1.1, EBU bmx 1.7.0": what kind of file it is, and who wrote it.
std::string kindText(const Inspection::Summary& summary);

/// What a clip is: title, time, pictures, sound, data, what people say of it, its identifier.
/// @param labels  whether the labels of codings and containers are shown.
std::vector<SummaryBlock> summaryBlocks(const Inspection::Summary& summary, bool labels);

/// What a clip is, in up to mostLines lines where not all is wanted: a title line, the warnings,
/// time, pictures, sound, data, what people say of it and its identifier.
std::string essenceText(const Inspection::Summary& summary, const WarningLog& warnings,
                        const SummaryText& what);

} // namespace Corvid::Tool
