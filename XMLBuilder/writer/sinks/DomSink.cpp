#include "XMLBuilder/writer/sinks/DomSink.h"

#include <string>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLBuilder {

DomSink::DomSink(xercesc::DOMElement* element)
    : document_(element == nullptr ? nullptr : element->getOwnerDocument()), open_(element) {}

void DomSink::createDocument(const Name& root) {
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    document_ = implementation->createDocument(root.uri, root.qualified, nullptr,
                                               xercesc::XMLPlatformUtils::fgMemoryManager);
    open_ = document_->getDocumentElement();
    const Text qualified = root.qualified;
    open_->setPrefix(std::u16string(qualified.substr(0, qualified.find(u':'))).c_str());
}

void DomSink::startElement(const Name& name, const Attribute* attributes, std::size_t count) {
    if (document_ == nullptr) {
        createDocument(name);
    } else {
        auto* const element = document_->createElementNS(name.uri, name.qualified);
        open_->appendChild(element);
        open_ = element;
    }
    for (std::size_t i = 0; i != count; ++i) {
        open_->setAttributeNS(attributes[i].name.uri, attributes[i].name.qualified,
                              attributes[i].value.data());
    }
}

void DomSink::endElement() {
    auto* const parent = open_->getParentNode();
    open_ = parent == document_ ? nullptr : static_cast<xercesc::DOMElement*>(parent);
}

void DomSink::text(Text text) { open_->appendChild(document_->createTextNode(text.data())); }

} // namespace Corvid::XMLBuilder
