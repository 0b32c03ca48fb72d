#pragma once

#include "editing/MergedCopies.h"
#include "host/metadata/PartitionMetadata.h"

#include <map>
#include <optional>

namespace Corvid::Editing {

/// How many of the sets with an InstanceUID are equal to the first of them in the document.
struct ExpectedCopies {
    std::optional<Types::u32> known; ///< of those whose class is known; nothing is said without
    std::optional<Types::u32> dark;  ///< of the others; likewise
};
using CopyCounts = std::map<Types::UUID, ExpectedCopies>;

/// Keeps one of the sets that have the same InstanceUID and the same bytes: the first. A document
/// holds a set twice when sets outside the tree of the Preface share it with that tree. Such a set
/// is the first with its InstanceUID, as references find no other.
///
/// Dark sets are merged where they are local sets with an InstanceUID. Others have no identifier,
/// so two of them were two in the file.
/// @param copies  how many sets equal to the first there are to be. Where it says so, those that
/// are
///                not equal to the first all stay.
/// @throws LimitExceeded  a copy has a value that no local set holds.
MergedCopies mergeCopies(Metadata::PartitionMetadata& metadata, const CopyCounts& copies = {});

} // namespace Corvid::Editing
