#include "XMLBuilder/writer/PropertyOrder.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

std::uint32_t orderOf(const Metadata::Element* element) {
    return *nameOf(*element->metaAttribute()->facts().definition).order;
}

} // namespace

void listProperties(const Metadata::MetadataSet& set,
                    std::vector<const Metadata::Element*>& properties) {
    const auto invalid = static_cast<std::size_t>(set.invalidEnd() - set.invalidBegin());
    properties.reserve(properties.size() + invalid + set.made().size());
    properties.insert(properties.end(), set.invalidBegin(), set.invalidEnd());
    const auto firstOfClass = static_cast<std::ptrdiff_t>(properties.size());
    for (const auto& [label, element] : set.made()) {
        const auto& facts = element->metaAttribute()->facts();
        if (facts.kind == MetaMetadata::AttributeFacts::Kind::placed &&
            nameOf(*facts.definition).order) {
            properties.push_back(element);
        }
    }
    std::sort(properties.begin() + firstOfClass, properties.end(),
              [](const auto* a, const auto* b) { return orderOf(a) < orderOf(b); });
}

} // namespace Corvid::XMLBuilder
