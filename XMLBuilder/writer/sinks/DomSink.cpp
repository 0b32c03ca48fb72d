#include "XMLBuilder/writer/sinks/DomSink.h"

#include <string>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLBuilder {

DomSink::DomSink(xercesc::DOMElement* element) {
    if (element != nullptr) {
        document_ = element->getOwnerDocument();
        open_.push_back(element);
    }
}

void DomSink::createDocument(const Name& root) {
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    document_ = implementation->createDocument(root.uri, root.qualified, nullptr,
                                               xercesc::XMLPlatformUtils::fgMemoryManager);
    open_.push_back(document_->getDocumentElement());
    const Text qualified = root.qualified;
    open_.back()->setPrefix(std::u16string(qualified.substr(0, qualified.find(u':'))).c_str());
}

void DomSink::startElement(const Name& name, const Attribute* attributes, std::size_t count) {
    if (document_ == nullptr) {
        createDocument(name);
    } else {
        auto* const element = document_->createElementNS(name.uri, name.qualified);
        open_.back()->appendChild(element);
        open_.push_back(element);
    }
    for (std::size_t i = 0; i != count; ++i) {
        open_.back()->setAttributeNS(attributes[i].name.uri, attributes[i].name.qualified,
                                     attributes[i].value.data());
    }
}

void DomSink::endElement() { open_.pop_back(); }

void DomSink::text(Text text) { open_.back()->appendChild(document_->createTextNode(text.data())); }

} // namespace Corvid::XMLBuilder
