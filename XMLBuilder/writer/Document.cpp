#include "XMLBuilder/writer/Document.h"

#include "XMLBuilder/writer/DarkWriter.h"
#include "XMLBuilder/writer/NamespaceMap.h"
#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/writer/VisitedRecord.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <string>

namespace Corvid::XMLBuilder {

namespace {

void declareNamespace(xercesc::DOMElement* root, const std::u16string& prefix, const XMLCh* uri) {
    root->setAttributeNS(xercesc::XMLUni::fgXMLNSURIName, (u"xmlns:" + prefix).c_str(), uri);
}

void declareNamespaces(xercesc::DOMElement* root, const NamespaceMap& namespaces,
                       const XMLCh* rootUri) {
    for (const auto& [uri, prefix] : namespaces) {
        if (uri != rootUri) {
            declareNamespace(root, prefix, uri.c_str());
        }
    }
}

/// The floating container if there is one. It is looked for from the end, where it stands or stood
/// when it was last asked for, so that asking again and again costs no more than what was added.
xercesc::DOMElement* findFloatingContainer(xercesc::DOMElement* root) {
    for (auto* child = root->getLastChild(); child != nullptr;
         child = child->getPreviousSibling()) {
        if (child->getNodeType() != xercesc::DOMNode::TEXT_NODE &&
            xercesc::XMLString::equals(child->getNodeName(), Names::floatingDarkMetadata)) {
            return static_cast<xercesc::DOMElement*>(child);
        }
    }
    return nullptr;
}

void writeDarkSets(const Filling& filling, xercesc::DOMElement* root, NamespaceMap& namespaces) {
    auto* document = root->getOwnerDocument();
    const auto end = filling.partition->darkEnd();
    for (auto set = filling.partition->darkBegin(); set != end; ++set) {
        writeDarkMetadataSet(**set, document, floatingContainer(document, root), namespaces);
    }
}

void writeFloatingSets(const Filling& filling, xercesc::DOMElement* root,
                       NamespaceMap& namespaces) {
    Templates::vector<const Metadata::MetadataSet*> order;
    const std::size_t outside = filling.partition->calculateSerializationOrder(order, true, false);
    VisitedRecord visited;
    for (auto set = order.end() - static_cast<std::ptrdiff_t>(outside); set != order.end(); ++set) {
        if (visited.holds(**set)) {
            continue;
        }
        ToXMLMetadataSetVisitor writer(
            filling.partition, floatingContainer(root->getOwnerDocument(), root),
            filling.referencesAsValues, filling.skipNonStructural, &namespaces, &visited);
        (*set)->accept(writer);
    }
}

} // namespace

xercesc::DOMElement* createDocument(const Names::Namespace& names) {
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    const std::u16string prefix = names.prefix;
    auto* document =
        implementation->createDocument(names.uri, (prefix + u":MetadataSets").c_str(), nullptr,
                                       xercesc::XMLPlatformUtils::fgMemoryManager);
    auto* root = document->getDocumentElement();
    root->setPrefix(names.prefix);
    declareNamespace(root, prefix, names.uri);
    return root;
}

Templates::auto_ptr<xercesc::DOMNode> fillDocument(const Filling& filling,
                                                   xercesc::DOMElement* root,
                                                   const XMLCh* rootUri) {
    if (filling.start == nullptr) {
        return {};
    }
    NamespaceMap namespaces;
    VisitedRecord visited;
    ToXMLMetadataSetVisitor writer(filling.partition, root, filling.referencesAsValues,
                                   filling.skipNonStructural, &namespaces, &visited);
    filling.start->accept(writer);
    writeDarkSets(filling, root, namespaces);
    writeFloatingSets(filling, root, namespaces);
    if (auto* container = findFloatingContainer(root)) {
        root->appendChild(container);
    }
    declareNamespaces(root, namespaces, rootUri);
    return Templates::auto_ptr<xercesc::DOMNode>(root->getOwnerDocument());
}

xercesc::DOMElement* floatingContainer(xercesc::DOMDocument* document, xercesc::DOMElement* root) {
    if (auto* container = findFloatingContainer(root)) {
        return container;
    }
    auto* container = document->createElementNS(Names::groups.uri, Names::floatingDarkMetadata);
    root->appendChild(container);
    return container;
}

} // namespace Corvid::XMLBuilder
