#pragma once

#include "Corvid_XMLBuilder/Export.h"
#include "host/base/Text.h"

namespace Corvid::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Corvid::Metadata

/// XML as header metadata, the way back from Corvid::XMLBuilder.
///
/// The sets are made in the partition, which owns them, and get new InstanceUIDs; references in the
/// document lead to the same sets as they did there. The list holds the sets made for children of
/// the root and of the container of dark sets, in document order; neither dark sets nor sets that
/// are inside references. Elements that the dictionary does not know as sets are passed over.
///
/// All three throw:
///   ParseError       the bytes are no XML document that may be read, or Xerces-C or XQilla fails
///   InvalidFormat    a value does not have the form that its type asks for
///   InvalidLength    the items of a collection have different sizes
///   LimitExceeded    sets are inside each other too deep, a value has more bytes than a property
///                    can hold, or no local tag is left for one
///   InvalidArgument  there is no partition
/// What was made before a failure stays in the partition. Calls for different partitions may run at
/// the same time.
namespace Corvid::XML2Partition {

/// Sets that live in a partition.
using SetList = Templates::list<Metadata::MetadataSet*, Platform::malloc_alloc>;

/// Reads a document from memory. Its encoding is recognised.
/// @param bytes      borrowed for the call.
/// @param partition  gets the sets; not null.
CORVID_XMLBUILDER_EXPORT SetList getPartitionMetadataFromBuffer(
    const unsigned char* bytes, unsigned int length, Metadata::PartitionMetadata* partition);

/// Reads a document from text, up to its first zero.
CORVID_XMLBUILDER_EXPORT SetList
getPartitionMetadataFromString(const Utf16Text& text, Metadata::PartitionMetadata* partition);

/// Reads a document from a file.
/// @param path  zero-terminated UTF-16.
/// @throws IOError  the file can't be read; else as above.
CORVID_XMLBUILDER_EXPORT SetList
getPartitionMetadataFromFile(const unsigned short* path, Metadata::PartitionMetadata* partition);

} // namespace Corvid::XML2Partition
