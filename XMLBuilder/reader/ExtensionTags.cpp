#include "XMLBuilder/reader/ExtensionTags.h"

#include "XMLBuilder/Namespaces.h"
#include "XMLBuilder/reader/ChildSteps.h"
#include "host/base/Exceptions.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;

Types::LocalTag tagFrom(const XMLCh* text) {
    return Types::LocalTag(XMLUtils::fromXml(text), Types::dottedHexadecimal);
}

} // namespace

Types::LocalTag ExtensionTags::of(const DOMElement& extension) {
    if (const XMLCh* tag = extension.getAttribute(Names::staticLocalTag); *tag != 0) {
        return tags_.tagForUnknown(tagFrom(tag));
    }
    const Types::UniversalLabel label(
        XMLUtils::fromXml(extension.getAttribute(Names::universalLabel)), Types::dottedHexadecimal);
    // Most documents have no such label, and then nobody needs to know what they name.
    if (!namedAreKept_) {
        keepNamed(*extension.getOwnerDocument()->getDocumentElement());
        namedAreKept_ = true;
    }
    return tags_.findOrGenerate(label);
}

void ExtensionTags::keepNamed(const DOMElement& root) {
    const auto& containers =
        *root.getElementsByTagNameNS(Names::groups.uri, Names::localPart(Names::extensionElements));
    // Up to the first null: to ask for the length would make the list begin anew each time.
    for (XMLSize_t i = 0; const auto* container = containers.item(i); ++i) {
        for (const auto* child = ChildSteps::firstElement(*container); child != nullptr;
             child = ChildSteps::nextElement(*child)) {
            if (const XMLCh* tag = child->getAttribute(Names::staticLocalTag); *tag != 0) {
                keep(tag);
            }
        }
    }
}

void ExtensionTags::keep(const XMLCh* tag) {
    try {
        tags_.keep(tagFrom(tag));
    } catch (const Exceptions::InvalidFormat&) {
        // That is for whoever reads the element, if anybody does.
    }
}

} // namespace Corvid::XMLBuilder
