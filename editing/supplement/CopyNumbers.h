#pragma once

#include "editing/supplement/CollectSupplement.h"

#include <unordered_map>
#include <vector>

namespace Corvid::Editing {

/// Which of the sets with its InstanceUID, in the order of the document, a set is; of those that
/// share one. Two numbers where the document holds it twice. Sets of a class that the dictionary
/// lacks are numbered for themselves: a document says nothing of their properties.
using CopyNumbers = std::unordered_map<const Metadata::MetadataSet*, std::vector<Types::u32>>;

/// @param order    the sets of the Preface's tree, then those outside of it.
/// @param outside  how many those are.
CopyNumbers numberCopies(const Metadata::PartitionMetadata& metadata,
                         const Templates::vector<const Metadata::MetadataSet*>& order,
                         std::size_t outside, const std::optional<DocumentPart>& part);

} // namespace Corvid::Editing
