#pragma once

#include "Corvid_Editing/Export.h"
#include "editing/compare/Differences.h"
#include "host/metadata/PartitionMetadata.h"

namespace Corvid::Editing {

/// What the comparison of two partitions found.
struct Comparison {
    std::size_t sets = 0;       ///< that were there before, dark ones included
    std::size_t properties = 0; ///< that they had; of dark sets none are counted
    Differences differences;
};

/// Compares two states of the metadata of a file, as it was and as it came back from a document:
/// set by set, property by property, value by value.
///
/// Sets belong together by their InstanceUID, those without one by their class and order; sets
/// that the dictionary does not know by their bytes, and by what their local tags mean. Not
/// compared is what is no metadata but its form in the file: the order of sets and of a set's
/// properties, other local tags, the octets of the length of a set that the dictionary knows.
/// @param before, after  borrowed; their primer packs get entries where they lack some that dark
///     sets need.
/// @param listed         how many differences of a kind are listed; all are counted.
CORVID_EDITING_EXPORT Comparison compare(Metadata::PartitionMetadata& before,
                                         Metadata::PartitionMetadata& after,
                                         std::size_t listed = Differences::mostListed);

} // namespace Corvid::Editing
