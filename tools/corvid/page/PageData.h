#pragma once

#include "tools/corvid/page/WritePage.h"

namespace Corvid::Tool {

/// Writes what a page shows as one object of JSON.
/// @param comparison  with another clip, or null. Borrowed.
/// @param sink        borrowed.
void writePageData(const PageContent& content, const PageComparison* comparison,
                   DataIO::DataSink& sink);

} // namespace Corvid::Tool
