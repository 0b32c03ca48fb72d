#pragma once

#include "Corvid_XMLBuilder/Export.h"
#include "host/base/Text.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/UnicodeString.h"

#include <xercesc/dom/DOMNode.hpp>

namespace Corvid::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Corvid::Metadata

/// The header metadata of a partition as XML.
///
/// All four forms of partition2XML take two flags:
///
/// @param referencesAsValues  false: sets are side by side and references are links
///     (`types:TargetInstance`). true: a strongly referenced set is inside the property that
///     owns it, and references to sets that are no structural metadata may be left out.
/// @param skipNonStructural  leaves out sets that are no structural metadata (SMPTE ST 377-1): as
///     targets of links they are not written, as values they are left out with their property.
///
/// One document is built at a time in a process: a second caller waits. An exception of the model
/// or of Xerces-C reaches the caller; what was built of the document until then is not released,
/// nor is a document without Preface or start set. docs/limits.md says when that may happen.
///
/// With referencesAsValues sets nest at most 256 deep: beyond that LimitExceeded is thrown, before
/// there is a document.
namespace Corvid::XMLBuilder {

/// "urn:SMPTE:S377M", the namespace of the document. The same object on every call.
CORVID_XMLBUILDER_EXPORT const XMLUtils::UnicodeString& getNamespaceURI();

/// "s377m", the prefix of the document's namespace. The same object on every call.
CORVID_XMLBUILDER_EXPORT const XMLUtils::UnicodeString& getPrefix();

/// Writes the partition from its first Preface set on.
/// @param partition  borrowed; may be null.
/// @return the document (its DOMNode face), owned by the caller; null where there is no partition
/// or
///     no Preface in it.
CORVID_XMLBUILDER_EXPORT Templates::auto_ptr<xercesc::DOMNode> partition2XML(
    Metadata::PartitionMetadata* partition, bool referencesAsValues, bool skipNonStructural);

/// Writes the partition from a set of it on.
/// @param start  borrowed; null gives a null result.
CORVID_XMLBUILDER_EXPORT Templates::auto_ptr<xercesc::DOMNode> partition2XML(
    Metadata::PartitionMetadata* partition, const Metadata::MetadataSet* start,
    bool referencesAsValues, bool skipNonStructural);

/// Writes the partition as text.
/// @param out  takes the text; untouched where the document would be null.
/// @throws InvalidFormat  a value holds a character that XML cannot hold.
CORVID_XMLBUILDER_EXPORT void partition2XML(Metadata::PartitionMetadata* partition,
                                            bool referencesAsValues, bool skipNonStructural,
                                            XMLUtils::EncodingType encoding, Utf16Text& out);

/// Writes the partition as text from a set of it on.
CORVID_XMLBUILDER_EXPORT void partition2XML(Metadata::PartitionMetadata* partition,
                                            const Metadata::MetadataSet* start,
                                            bool referencesAsValues, bool skipNonStructural,
                                            XMLUtils::EncodingType encoding, Utf16Text& out);

} // namespace Corvid::XMLBuilder
