#include "host/metadata/FollowedReferences.h"

#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/ElementItems.h"
#include "host/metadata/MetadataSet.h"

#include <algorithm>
#include <iterator>

namespace Corvid::Metadata {

namespace {

bool refers(const Element& element) {
    const ElementItems items(&element);
    return items.size() != 0 && items.reference(0) != nullptr;
}

bool hasPlaceInDocuments(const Element& element) {
    const auto& facts = element.metaAttribute()->facts();
    return facts.kind == MetaMetadata::AttributeFacts::Kind::placed &&
           facts.definition->attribute("SchemaIndex") != nullptr;
}

} // namespace

void appendFollowedReferences(const MetadataSet& set,
                              Templates::vector<const Types::Reference*>& references) {
    if (set.metaMetadataSet() == nullptr) {
        return;
    }
    Templates::vector<const Element*> elements;
    for (const auto& entry : set.made()) {
        // Few elements refer to sets, and to ask for the place costs more.
        if (refers(*entry.second) && hasPlaceInDocuments(*entry.second)) {
            elements.push_back(entry.second);
        }
    }
    std::copy_if(set.invalidBegin(), set.invalidEnd(), std::back_inserter(elements),
                 [](const Element* element) { return refers(*element); });
    std::sort(elements.begin(), elements.end(),
              [](const Element* a, const Element* b) { return a->position() < b->position(); });
    for (const Element* element : elements) {
        const ElementItems items(element);
        for (Types::u32 i = 0; i != items.size(); ++i) {
            references.push_back(items.reference(i));
        }
    }
}

} // namespace Corvid::Metadata
