#pragma once

#include "editing/MergedCopies.h"
#include "host/metadata/PartitionMetadata.h"

#include <map>

namespace Corvid::Editing {

/// How many equal sets have an InstanceUID.
using CopyCounts = std::map<Types::UUID, Types::u32>;

/// Keeps one of the sets that have the same InstanceUID and the same bytes: the first. A document
/// holds a set twice when sets outside the tree of the Preface share it with that tree.
///
/// Dark sets are merged where they are local sets with an InstanceUID. Others have no identifier,
/// so two of them were two in the file.
/// @param copies  how many equal ones there are to be, where there is to be more than one.
/// @throws LimitExceeded  a copy has a value that no local set holds.
MergedCopies mergeCopies(Metadata::PartitionMetadata& metadata, const CopyCounts& copies = {});

} // namespace Corvid::Editing
