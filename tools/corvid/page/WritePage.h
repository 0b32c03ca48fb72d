#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "host/dataio/RandomAccessSource.h"
#include "inspection/Summary.h"
#include "tools/corvid/terminal/WarningLog.h"

#include <optional>

namespace Corvid::Tool {

struct PageComparison;

/// What a page shows of a clip.
struct PageContent {
    DataIO::RandomAccessSource& source; ///< of the clip
    const mxf::HeaderMetadata& header;
    const XMLBuilder::DocumentPlan& plan; ///< of the metadata
    const Inspection::Summary& summary;
    const WarningLog& warnings;
    std::optional<std::size_t> mostRawBytes; ///< of each value; nothing for all
};

/// Writes one page of HTML with everything in it, piece by piece.
/// @param comparison  with another clip, of a page of two; else null. Borrowed.
/// @throws IOError  the clip can't be read, or the page not written.
void writePage(const PageContent& content, const PageComparison* comparison,
               DataIO::DataSink& sink);

} // namespace Corvid::Tool
