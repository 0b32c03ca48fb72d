#pragma once

#include "tools/corvid/reports/SummaryReport.h"

namespace Corvid::Tool {

/// What a clip is, in up to mostLines lines where not all is wanted: a title line, the warnings,
/// time, pictures, sound, data, what people say of it and its identifier.
std::string essenceText(const Inspection::Summary& summary, const WarningLog& warnings,
                        const SummaryText& what);

} // namespace Corvid::Tool
