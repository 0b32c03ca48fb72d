#pragma once

#include "host/metadata/PartitionMetadata.h"

namespace Corvid::Tool {

class Messages;

/// Warns of the references that a document has no place for when each set is written inside the
/// property that refers to it: a set that several properties own is in the first one only, and a
/// single reference to a set of unknown class says nothing. The first few are named, all counted.
/// What `structuralOnly` leaves out is left out on purpose.
/// @param start  the set that the document begins with.
void warnOfLeftOutReferences(const Metadata::PartitionMetadata& metadata,
                             const Metadata::MetadataSet& start, bool structuralOnly,
                             Messages& messages);

} // namespace Corvid::Tool
