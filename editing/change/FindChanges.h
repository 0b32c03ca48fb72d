#pragma once

#include "editing/change/Changes.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::Editing {

/// Finds what makes one header metadata of another.
///
/// Sets belong together by key and InstanceUID; of several alike, and of those without InstanceUID,
/// first those that say the same, then the others in their order. Properties belong together by
/// label. What is no metadata but its form does not count: the order of sets and of properties,
/// tags, lengths of lengths, fill, directories of objects.
Changes findChanges(const mxf::HeaderLayout& before, const mxf::HeaderLayout& after,
                    const MetaMetadata::Dictionary& dictionary);

/// The same for two partitions of one dictionary. Borrowed; their primer packs get the entries that
/// they lack.
/// @throws LimitExceeded, InvalidFormat  one of them can't be written.
Changes findChanges(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& after);

} // namespace Corvid::Editing
