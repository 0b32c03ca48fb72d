#include "tools/corvid/WriteDocument.h"

#include "XMLBuilder/Namespaces.h"
#include "XMLBuilder/XMLBuilder.h"
#include "host/base/Exceptions.h"
#include "host/xmlutils/XmlText.h"
#include "tools/corvid/supplement/CollectSupplement.h"
#include "tools/corvid/supplement/SupplementText.h"

#include <set>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace Corvid::Tool {

namespace {

using Document = Templates::auto_ptr<xercesc::DOMNode>;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

Document build(PartitionMetadata& metadata, const DocumentContent& content) {
    if (content.start) {
        return XMLBuilder::partition2XML(&metadata, &metadata.resolve(*content.start).front(),
                                         content.referencesAsValues, content.structuralOnly);
    }
    prefaceOf(metadata); // A writer that finds none leaves its document behind.
    return XMLBuilder::partition2XML(&metadata, content.referencesAsValues, content.structuralOnly);
}

/// The identifiers of the sets that a document holds.
std::set<std::u16string> identifiersIn(const xercesc::DOMDocument& document) {
    std::set<std::u16string> identifiers;
    const xercesc::DOMElement* const root = document.getDocumentElement();
    const xercesc::DOMElement* element = root;
    while (element != nullptr) {
        if (const auto* identifier = element->getAttributeNode(XMLBuilder::Names::instanceUID)) {
            identifiers.insert(identifier->getValue());
        }
        const xercesc::DOMElement* next = element->getFirstElementChild();
        while (next == nullptr && element != root) {
            next = element->getNextElementSibling();
            if (next == nullptr) {
                element = static_cast<const xercesc::DOMElement*>(element->getParentNode());
            }
        }
        element = next;
    }
    return identifiers;
}

DocumentSupplement supplementOf(const PartitionMetadata& metadata, const DocumentContent& content,
                                const xercesc::DOMNode& document) {
    if (!content.structuralOnly && !content.start) {
        return collectSupplement(metadata);
    }
    const auto written = identifiersIn(static_cast<const xercesc::DOMDocument&>(document));
    const MetadataSet& start =
        content.start ? metadata.resolve(*content.start).front() : prefaceOf(metadata);
    auto supplement = collectSupplement(
        metadata, DocumentPart{&start, content.structuralOnly, [&](const MetadataSet& set) {
                                   return !set.hasInstanceUID() ||
                                          written.count(XMLUtils::toXml(
                                              set.instanceUID().toString().c_str())) != 0;
                               }});
    supplement.partial = {content.structuralOnly, content.start};
    return supplement;
}

} // namespace

const MetadataSet& prefaceOf(const PartitionMetadata& metadata) {
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        throw Exceptions::InvalidFormat(
            "the partition has no Preface; to-xml --start INSTANCEUID begins with another set",
            CORVID_HERE);
    }
    return *prefaces.front();
}

WrittenDocument::WrittenDocument(PartitionMetadata& metadata, const DocumentContent& content)
    : document_(build(metadata, content)) {
    for (const std::string& instruction :
         toInstructions(supplementOf(metadata, content, *document_))) {
        instructions_ += "\n<?" + instruction + "?>";
    }
}

void WrittenDocument::serialise(XMLUtils::EncodingType encoding, XMLUtils::Layout layout,
                                XMLUtils::InvalidCharacters& invalid,
                                DataIO::DataSink& sink) const {
    XMLUtils::serialise(document_.get(), encoding, layout, invalid, sink, instructions_);
}

} // namespace Corvid::Tool
