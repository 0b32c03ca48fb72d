#pragma once

#include "editing/WriteDocument.h"
#include "host/metadata/PartitionMetadata.h"

namespace Corvid::Editing {

/// What comes back of metadata that was written as a document and read again, strictly and with the
/// written identifiers. Characters that XML can't hold are replaced.
/// @param metadata  borrowed; afterwards as it was, but for entries that its primer pack lacked.
/// @throws BaseException  to-xml or from-xml would refuse it.
Templates::auto_ptr<Metadata::PartitionMetadata> throughXml(Metadata::PartitionMetadata& metadata,
                                                            const DocumentContent& content);

} // namespace Corvid::Editing
