#include "XMLBuilder/writer/DarkWriter.h"

#include "XMLBuilder/HexText.h"
#include "XMLBuilder/NumberText.h"
#include "XMLBuilder/writer/Document.h"
#include "host/dataio/Memory.h"
#include "host/klv/BerInput.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

namespace {

/// Makes the element of a dark set, still without text and parent.
xercesc::DOMElement* createDarkElement(const KLV::Key& key, unsigned char berLength,
                                       xercesc::DOMDocument* document, NamespaceMap& namespaces) {
    namespaces.insertUnlessPrefixInUse(Names::groups);
    const XMLCh* uri = namespaces.uriOf(Names::groups.prefix).data();
    auto* element = document->createElementNS(uri, Names::darkMetadata);
    element->setAttributeNS(uri, Names::key,
                            XMLUtils::toXml(key.toString(Types::dottedHexadecimal).c_str()));
    element->setAttributeNS(uri, Names::berOctetCount, DecimalText(int{berLength}).c_str());
    return element;
}

void appendHex(xercesc::DOMElement* element, const unsigned char* bytes, std::size_t size) {
    element->appendChild(
        element->getOwnerDocument()->createTextNode(toHexText(bytes, size).c_str()));
}

} // namespace

void writeDarkMetadataSet(const Metadata::DarkMetadataSet& set, xercesc::DOMDocument* document,
                          xercesc::DOMElement* container, NamespaceMap& namespaces) {
    auto* element = createDarkElement(set.key(), set.berLength(), document, namespaces);
    if (const DataIO::Slice* value = set.value()) {
        appendHex(element, value->begin(), value->size());
    }
    container->appendChild(element);
}

void writeDarkParsedGroup(const Metadata::DarkParsedGroup& group,
                          Metadata::PartitionMetadata& partition, xercesc::DOMDocument* document,
                          NamespaceMap& namespaces) {
    namespaces.insert(Names::types);
    namespaces.insert(Names::groups);
    auto* root = document->getDocumentElement();
    auto* container = floatingContainer(document, root);
    root->appendChild(container);

    auto* element = createDarkElement(group.key(), group.berLength(), document, namespaces);
    DataIO::Memory::MemoryDataSink sink(group.serializedSize());
    group.serialize(sink, partition.partitionDictionary());
    const unsigned char* afterKey = sink.rawBuffer() + KLV::Key::length;
    const std::size_t head = KLV::Key::length + KLV::berOctetsFromFirst(*afterKey);
    appendHex(element, sink.rawBuffer() + head, sink.serializedSize() - head);
    container->appendChild(element);
}

} // namespace Corvid::XMLBuilder
