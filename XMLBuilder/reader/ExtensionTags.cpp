#include "XMLBuilder/reader/ExtensionTags.h"

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/ChildSteps.h"
#include "XMLBuilder/format/HexBytes.h"
#include "host/base/Exceptions.h"
#include "host/mxf/LocalSet.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include <algorithm>
#include <string_view>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;

/// The key of a dark set; zeros where it can't be read, which is refused where the set is read.
KLV::Key keyOf(const DOMElement& set) {
    try {
        return KLV::Key(XMLUtils::fromXml(set.getAttribute(Names::key)), Types::dottedHexadecimal);
    } catch (const Exceptions::InvalidFormat&) {
        return {};
    }
}

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
    keepTagsOfDarkSets(root);
}

void ExtensionTags::keepTagsOfDarkSets(const DOMElement& root) {
    const auto& sets =
        *root.getElementsByTagNameNS(Names::groups.uri, Names::localPart(Names::darkMetadata));
    for (XMLSize_t i = 0; const auto* set = static_cast<const DOMElement*>(sets.item(i)); ++i) {
        const auto* content = set->getFirstChild();
        const XMLCh* const value = content == nullptr ? nullptr : content->getNodeValue();
        const std::u16string_view text = value == nullptr ? u"" : value;
        // Bytes that can't be read are refused where the set is read.
        if (text.empty() || text.size() % 2 != 0 ||
            !std::all_of(text.begin(), text.end(), isHexDigit)) {
            continue;
        }
        const FieldBytes bytes = decodeHex(value);
        mxf::LocalSet properties(keyOf(*set), {bytes.data(), bytes.size()});
        while (const auto property = properties.next()) {
            tags_.keep(Types::LocalTag(property->tag));
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
