#include "tools/corvid/input/ReadSummary.h"

#include "tools/corvid/CommandWarnings.h"

namespace Corvid::Tool {

Inspection::Summary readSummary(mxf::File& file, const mxf::HeaderMetadata& header,
                                mxf::WarningSink& warnings) {
    Inspection::Summary summary = Inspection::summarise(file, header);
    for (const auto& each : summary.essence.contradictions) {
        mxf::Warning warning(CommandWarnings::contradiction, each.text);
        warning.set = each.set;
        warning.property = each.property;
        warnings.warn(warning);
    }
    return summary;
}

} // namespace Corvid::Tool
