#include "editing/compare/PropertyList.h"

#include "host/dictionary/MetaElement.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

void identify(ListedProperty& listed, Types::u8 kind, const Types::UniversalLabel& label) {
    const auto bytes = label.withoutVersion();
    listed.identity[0] = kind;
    std::copy(bytes.begin(), bytes.end(), listed.identity.begin() + 1);
}

ListedProperty listedUnknown(const Metadata::PartitionDictionary& tags,
                             const Metadata::Element& element) {
    const Types::LocalTag tag(element.metaAttribute()->facts().localTag);
    ListedProperty listed{{}, &element, true, {}};
    if (const auto* label = tags.find(tag, true)) {
        listed.label = *label;
    }
    if (listed.label &&
        (!tag.isStaticLocalTag() || tags.dictionary()->findElement(*listed.label) != nullptr)) {
        identify(listed, 'u', *listed.label);
    } else {
        listed.identity[0] = 't';
        std::copy(tag.bytes().begin(), tag.bytes().end(), listed.identity.begin() + 1);
    }
    return listed;
}

ListedProperty listedKnown(const Metadata::PartitionDictionary& tags,
                           const Metadata::Element& element) {
    using Kind = MetaMetadata::AttributeFacts::Kind;
    const auto& facts = element.metaAttribute()->facts();
    ListedProperty listed{{}, &element, false, {}};
    identify(listed, facts.kind == Kind::placed ? 'p' : 'm', facts.definition->label());
    listed.label = labelInFile(tags, element);
    return listed;
}

} // namespace

const Types::UniversalLabel& labelInFile(const Metadata::PartitionDictionary& tags,
                                         const Metadata::Element& element) {
    const Types::UniversalLabel& registered = element.definition()->label();
    const Types::u16 tag = element.localTag();
    const auto* const label =
        tag == 0 ? tags.find(registered) : tags.find(Types::LocalTag(tag), true);
    return label == nullptr ? registered : *label;
}

std::vector<ListedProperty> listProperties(const Metadata::PartitionDictionary& tags,
                                           const Metadata::MetadataSet& set) {
    std::vector<ListedProperty> list;
    const auto add = [&](const Metadata::Element& element) {
        if (!element.isSkipped()) {
            list.push_back(element.definition() == nullptr ? listedUnknown(tags, element)
                                                           : listedKnown(tags, element));
        }
    };
    for (const auto& [label, element] : set.made()) {
        if (!Metadata::Structural::isInstanceUID(label)) {
            add(*element);
        }
    }
    std::for_each(set.invalidBegin(), set.invalidEnd(),
                  [&](const Metadata::Element* element) { add(*element); });
    std::stable_sort(list.begin(), list.end(),
                     [](const auto& a, const auto& b) { return a.identity < b.identity; });
    return list;
}

} // namespace Corvid::Editing
