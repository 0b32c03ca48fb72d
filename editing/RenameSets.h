#pragma once

#include "editing/Renaming.h"
#include "host/metadata/PartitionMetadata.h"

namespace Corvid::Editing {

/// Gives every set that has an InstanceUID one that nobody else has, sets of one InstanceUID the
/// same. References follow their targets; those that lead to no set stay, because dark sets, whose
/// bytes are theirs to know, may be meant.
Renaming renameSets(Metadata::PartitionMetadata& metadata);

/// Gives the sets that are named in the renaming their new InstanceUIDs. References follow
/// likewise.
void renameSets(Metadata::PartitionMetadata& metadata, const Renaming& names);

} // namespace Corvid::Editing
