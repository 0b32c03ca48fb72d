#include "XMLBuilder/schema/SchemaDocument.h"

#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMElement;

constexpr const XMLCh* schemaUri = u"http://www.w3.org/2001/XMLSchema";

Templates::auto_ptr<xercesc::DOMNode> createDocument() {
    auto* const core = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    return Templates::auto_ptr<xercesc::DOMNode>(core->createDocument(
        schemaUri, u"xs:schema", nullptr, xercesc::XMLPlatformUtils::fgMemoryManager));
}

void declare(DOMElement& root, const std::u16string& prefix, const std::u16string& uri) {
    root.setAttributeNS(xercesc::XMLUni::fgXMLNSURIName, (u"xmlns:" + prefix).c_str(), uri.c_str());
}

} // namespace

SchemaDocument::SchemaDocument(const Names::Namespace& target)
    : uri_(target.uri), document_(createDocument()),
      root_(static_cast<DOMDocument*>(document_.get())->getDocumentElement()) {
    root_->setAttribute(u"targetNamespace", target.uri);
    root_->setAttribute(u"elementFormDefault", u"qualified");
    declare(*root_, u"xs", schemaUri);
    declare(*root_, target.prefix, uri_);
}

DOMElement& SchemaDocument::add(DOMElement& parent, const XMLCh* kind,
                                const Attributes& attributes) {
    auto* const element = root_->getOwnerDocument()->createElementNS(schemaUri, kind);
    for (const auto& [name, value] : attributes) {
        element->setAttribute(name, value.c_str());
    }
    parent.appendChild(element);
    return *element;
}

DOMElement& SchemaDocument::define(const XMLCh* kind, const std::u16string& name,
                                   const Attributes& attributes) {
    DOMElement*& element = defined_[{kind, name}];
    if (element != nullptr) {
        throw Exceptions::InvalidDictionary(
            "two definitions of an element " + Platform::toUtf8(XMLUtils::fromXml(name.c_str())) +
                " in the namespace " + Platform::toUtf8(XMLUtils::fromXml(uri_.c_str())) +
                ", of which a schema can't hold both; expected sets, properties and parts of the "
                "document to have different names",
            CORVID_HERE);
    }
    element = &add(*root_, kind, {{u"name", name}});
    for (const auto& [attribute, value] : attributes) {
        element->setAttribute(attribute, value.c_str());
    }
    return *element;
}

void SchemaDocument::annotate(DOMElement& element, const std::u16string& text) {
    auto& annotation = add(element, u"xs:annotation");
    element.insertBefore(&annotation, element.getFirstChild());
    add(annotation, u"xs:documentation")
        .appendChild(root_->getOwnerDocument()->createTextNode(text.c_str()));
}

std::u16string SchemaDocument::refer(const Names::Namespace& names,
                                     const std::u16string& localName) {
    if (uri_ != names.uri) {
        prefixes_.try_emplace(names.uri, names.prefix);
    }
    return std::u16string(names.prefix) + u':' + localName;
}

Templates::auto_ptr<xercesc::DOMNode> SchemaDocument::finish() {
    auto* const first = root_->getFirstChild();
    for (const auto& [uri, prefix] : prefixes_) {
        declare(*root_, prefix, uri);
        root_->insertBefore(
            &add(*root_, u"xs:import",
                 {{u"namespace", uri}, {u"schemaLocation", schemaFileName(prefix)}}),
            first);
    }
    return std::move(document_);
}

std::u16string schemaFileName(const std::u16string& prefix) { return prefix + u".xsd"; }

} // namespace Corvid::XMLBuilder
