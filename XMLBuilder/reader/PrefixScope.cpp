#include "XMLBuilder/reader/PrefixScope.h"

#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

bool declaresNamespaces(const DOMElement& element) {
    const auto* attributes = element.getAttributes();
    for (XMLSize_t i = 0; i != attributes->getLength(); ++i) {
        if (xercesc::XMLString::startsWith(attributes->item(i)->getNodeName(),
                                           xercesc::XMLUni::fgXMLNSString)) {
            return true;
        }
    }
    return false;
}

} // namespace

const DOMElement& PrefixScope::declarerFor(const DOMElement& element) {
    const DOMElement* declarer = &element;
    while (!declaresNamespaces(*declarer)) {
        const DOMNode* parent = declarer->getParentNode();
        if (parent == nullptr || parent->getNodeType() != DOMNode::ELEMENT_NODE) {
            break;
        }
        declarer = static_cast<const DOMElement*>(parent);
    }
    return *declarer;
}

const XMLCh* PrefixScope::uriOf(const XMLCh* prefix, const DOMElement& declarer) {
    if (&declarer != declarer_) {
        declarer_ = &declarer;
        known_.clear();
    }
    for (const auto& [knownPrefix, uri] : known_) {
        if (knownPrefix == prefix) {
            return uri;
        }
    }
    const XMLCh* uri = declarer.lookupNamespaceURI(prefix);
    known_.emplace_back(prefix, uri);
    return uri;
}

} // namespace Corvid::XMLBuilder
