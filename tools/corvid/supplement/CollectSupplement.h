#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "tools/corvid/supplement/DocumentSupplement.h"

#include <functional>

namespace Corvid::Tool {

/// Finds what of a partition its document has no place for.
/// @param isWritten  tells which sets are in the document; empty for all.
DocumentSupplement collectSupplement(
    const Metadata::PartitionMetadata& metadata,
    const std::function<bool(const Metadata::MetadataSet&)>& isWritten = {});

} // namespace Corvid::Tool
