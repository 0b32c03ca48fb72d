#pragma once

#include "tools/corvid/Comparison.h"

namespace Corvid::Tool {

/// Writes the document by which metadata is compared: in UTF-8, with U+FFFD for characters that XML
/// can't hold, without the values that no reader would take.
///
/// Needs Xerces-C, as all here; see XmlModule.h.
/// @param metadata  borrowed; afterwards as it was, but for entries that its primer pack lacked.
/// @throws InvalidFormat  there is no Preface; BaseException  as XMLBuilder/XMLBuilder.h says.
void writeForComparison(Metadata::PartitionMetadata& metadata, DataIO::DataSink& sink);

/// Takes metadata to XML and back, once with the identifiers that it has and once with new ones,
/// and compares what comes back. What stays out of the document counts as a difference.
/// @throws BaseException  as writeForComparison() and readDocument() do.
Comparison compareWithRoundTrip(Metadata::PartitionMetadata& metadata);

} // namespace Corvid::Tool
