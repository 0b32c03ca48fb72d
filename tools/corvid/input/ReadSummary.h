#pragma once

#include "inspection/Summary.h"

namespace Corvid::Tool {

/// Summarises a file. What its metadata says of the essence in two ways that contradict each other
/// becomes warnings.
/// @throws IOError, InvalidFormat  as Inspection::summarise().
Inspection::Summary readSummary(mxf::File& file, const mxf::HeaderMetadata& header,
                                mxf::WarningSink& warnings);

} // namespace Corvid::Tool
