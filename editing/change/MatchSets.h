#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <cstddef>

namespace Corvid::Editing {

/// Gives sets of one metadata the InstanceUIDs of those that they belong together with in another,
/// so that findChanges() compares them.
///
/// Sets of one class and InstanceUID belong together as they are. Those of the others do that the
/// same property of sets that belong together refers to strongly: first those of one class that say
/// the same but for references, then the others of one class, in their order. The Prefaces belong
/// together in any case, and the sets that nothing refers to strongly are compared likewise.
///
/// @param before, after  of one dictionary; borrowed. The sets of `after` and its references
///                       change.
/// @return how many sets have got another InstanceUID.
std::size_t matchSets(const Metadata::PartitionMetadata& before,
                      Metadata::PartitionMetadata& after);

} // namespace Corvid::Editing
