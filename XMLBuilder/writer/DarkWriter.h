#pragma once

#include "XMLBuilder/writer/NamespaceMap.h"

#include <xercesc/dom/DOM.hpp>

namespace Corvid::Metadata {
class DarkMetadataSet;
class DarkParsedGroup;
class PartitionMetadata;
} // namespace Corvid::Metadata

namespace Corvid::XMLBuilder {

/// Writes a set that the dictionary does not know as its key, the size of its length field and its
/// bytes, as the last child of the container.
void writeDarkMetadataSet(const Metadata::DarkMetadataSet& set, xercesc::DOMDocument* document,
                          xercesc::DOMElement* container, NamespaceMap& namespaces);

/// The same for a group, whose bytes are those that the partition would write. It goes into the
/// floating container, which becomes the last child of the root.
void writeDarkParsedGroup(const Metadata::DarkParsedGroup& group,
                          Metadata::PartitionMetadata& partition, xercesc::DOMDocument* document,
                          NamespaceMap& namespaces);

} // namespace Corvid::XMLBuilder
