#pragma once

#include "XMLBuilder/Namespaces.h"
#include "host/base/Templates.h"

#include <xercesc/dom/DOM.hpp>

namespace Corvid::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Corvid::Metadata

namespace Corvid::XMLBuilder {

/// What a document is to be filled with. Nothing is owned.
struct Filling {
    Metadata::PartitionMetadata* partition;
    const Metadata::MetadataSet* start; ///< may be null
    bool referencesAsValues;
    bool skipNonStructural;
};

/// Makes a document and returns its root element, "MetadataSets" in the namespace.
xercesc::DOMElement* createDocument(const Names::Namespace& names);

/// Writes the start set and all that it reaches, the dark sets, and the sets outside the tree of
/// the Preface; then declares on the root every namespace that was used.
/// @param rootUri  the namespace of the root, which is declared already.
/// @return the document of the root; null where there is no start set.
Templates::auto_ptr<xercesc::DOMNode> fillDocument(const Filling& filling,
                                                   xercesc::DOMElement* root, const XMLCh* rootUri);

/// The root's child that holds dark sets and the sets outside the Preface's tree; made as the last
/// child where there is none.
xercesc::DOMElement* floatingContainer(xercesc::DOMDocument* document, xercesc::DOMElement* root);

} // namespace Corvid::XMLBuilder
