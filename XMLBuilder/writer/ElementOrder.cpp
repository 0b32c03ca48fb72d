#include "XMLBuilder/writer/ElementOrder.h"

#include "XMLBuilder/NumberInput.h"
#include "XMLBuilder/writer/ToXMLMetaAttributeVisitor.h"
#include "host/metadata/MetadataSet.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

void appendInDocumentOrder(const Metadata::MetadataSet& set, std::vector<PlacedElement>& elements) {
    std::for_each(set.invalidBegin(), set.invalidEnd(), [&](const Metadata::Element* element) {
        elements.push_back({element, 0});
    });

    const std::size_t firstValid = elements.size();
    for (const auto& [label, element] : set.made()) {
        ToXMLMetaAttributeVisitor attribute;
        element->metaAttribute()->accept(attribute);
        if (const unsigned short* order = attribute.schemaIndex()) {
            elements.push_back({element, readNumber<std::uint32_t>(XMLUtils::toXml(order))});
        }
    }
    std::sort(elements.begin() + static_cast<std::ptrdiff_t>(firstValid), elements.end(),
              [](const PlacedElement& a, const PlacedElement& b) { return a.order < b.order; });
}

} // namespace Corvid::XMLBuilder
