#pragma once

#include "editing/Renaming.h"
#include "editing/compare/Comparison.h"

namespace Corvid::Editing {

/// As compare(), of sets that were given new InstanceUIDs.
/// @param renaming  which stands for which.
Comparison compareRenamed(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& after,
                          const Renaming& renaming, std::size_t listed = Differences::mostListed);

} // namespace Corvid::Editing
