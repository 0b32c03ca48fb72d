#include "host/xmlutils/ElementPath.h"

#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <string_view>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

namespace Corvid::XMLUtils {

namespace {

using View = std::basic_string_view<XMLCh>;

/// The local name of the attribute that tells one element from others of its name.
constexpr View identifierName = u"InstanceUID";

constexpr std::size_t longestIdentifier = 64;
constexpr std::size_t lastSteps = 3;

void append(Utf16Text& path, View text) { path.append(fromXml(text.data()), text.size()); }

void appendStep(Utf16Text& path, const xercesc::DOMElement& element) {
    append(path, element.getNodeName());
    const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
    for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
        const xercesc::DOMNode& attribute = *attributes.item(i);
        const XMLCh* const local = attribute.getLocalName();
        if (local != nullptr && local == identifierName) {
            append(path, u"[@");
            append(path, attribute.getNodeName());
            append(path, u"=\"");
            append(path, View(attribute.getNodeValue()).substr(0, longestIdentifier));
            append(path, u"\"]");
            return;
        }
    }
}

} // namespace

Utf16Text elementPath(const std::vector<const xercesc::DOMElement*>& open,
                      const XMLCh* attributeName) {
    Utf16Text path;
    const std::size_t first = open.size() > 1 ? 1 : 0;
    const std::size_t last = std::max(first + 1, open.size() - std::min(open.size(), lastSteps));
    if (first < open.size()) {
        appendStep(path, *open[first]);
    }
    if (last > first + 1) {
        append(path, u"/...");
    }
    for (std::size_t i = last; i < open.size(); ++i) {
        append(path, u"/");
        appendStep(path, *open[i]);
    }
    if (attributeName != nullptr) {
        append(path, u"/@");
        append(path, attributeName);
    }
    return path;
}

} // namespace Corvid::XMLUtils
