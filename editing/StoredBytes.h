#pragma once

#include "host/dataio/Memory.h"
#include "host/metadata/Element.h"

#include <string>

namespace Corvid::Metadata {
class PartitionMetadata;
} // namespace Corvid::Metadata

namespace Corvid::Editing {

/// The bytes of an element's value in a file. It must have one.
std::string bytesOf(const Metadata::Element& element);
/// Appends them.
void appendBytes(const Metadata::Element& element, std::string& to);

/// A header partition of the metadata, closed and complete.
/// @throws LimitExceeded, InvalidFormat  as mxf::HeaderMetadataWriter.
DataIO::Memory::MemoryDataSink headerPartitionOf(Metadata::PartitionMetadata& metadata);

} // namespace Corvid::Editing
