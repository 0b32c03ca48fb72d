#pragma once

#include "editing/Renaming.h"
#include "editing/compare/Comparison.h"

namespace Corvid::Editing {

/// As compare(), of sets that were given new InstanceUIDs.
/// @param renaming  the InstanceUID of each set before, and the one that it has now.
Comparison compareRenamed(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& after,
                          const Renaming& renaming, std::size_t listed = Differences::mostListed);

} // namespace Corvid::Editing
