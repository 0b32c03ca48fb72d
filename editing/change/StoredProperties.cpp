#include "editing/change/StoredProperties.h"

#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

std::string textOf(const MetaMetadata::MetaDefinition& definition) {
    return Platform::toUtf8(definition.attribute("XMLTagName"));
}

StoredSets::Identity identityOf(const KLV::Key& key, const std::optional<Types::UUID>& instance) {
    StoredSets::Identity identity{};
    const auto matched = key.forMatching();
    auto next = std::copy(matched.begin(), matched.end(), identity.begin());
    if (instance) {
        *next++ = 1;
        std::copy(instance->bytes().begin(), instance->bytes().end(), next);
    }
    return identity;
}

} // namespace

StoredProperties storedProperties(const mxf::HeaderLayout& layout, const mxf::LayoutItem& set,
                                  const MetaMetadata::Dictionary& dictionary) {
    static const PropertyPlace instanceUID{
        XMLBuilder::identityOf(Metadata::Structural::StructuralMetadataULs::instanceUID())};
    StoredProperties all;
    std::map<PropertyIdentity, std::size_t> ofIdentity;
    std::map<Types::u16, std::size_t> ofTag;
    mxf::LocalSet properties = layout.properties(set);
    while (const auto property = properties.next()) {
        StoredProperty stored;
        stored.name = {property->tag, ofTag[property->tag]++};
        stored.value = property->value;
        if (const auto* const label = layout.label(property->tag)) {
            stored.label = *label;
        } else if (const auto* const known = dictionary.findElementByStaticTag(property->tag)) {
            stored.label = known->label();
        }
        PropertyPlace place;
        place.identity = stored.label ? XMLBuilder::identityOf(*stored.label)
                                      : XMLBuilder::identityOf(Types::LocalTag(property->tag));
        place.occurrence = ofIdentity[place.identity]++;
        all.emplace(place, stored);
    }
    all.erase(instanceUID);
    return all;
}

std::string nameOf(const PropertyPlace& place, const std::optional<Types::UniversalLabel>& label,
                   const MetaMetadata::Dictionary& dictionary) {
    if (!label) {
        return Platform::toUtf8(
            Types::LocalTag(Types::readBigEndian<Types::u16>(place.identity.data() + 1))
                .toString());
    }
    const auto* const definition = dictionary.findElement(*label);
    return definition == nullptr ? Platform::toUtf8(label->toString()) : textOf(*definition);
}

std::string nameOf(const KLV::Key& key, const MetaMetadata::Dictionary& dictionary) {
    const auto* const definition = dictionary.findSet(key);
    return definition == nullptr ? Platform::toUtf8(key.toString()) : textOf(*definition);
}

StoredSets::StoredSets(const mxf::HeaderLayout& layout) {
    for (std::size_t number = 0; number != layout.items().size(); ++number) {
        const mxf::LayoutItem& item = layout.items()[number];
        if (item.kind == mxf::LayoutItem::Kind::set) {
            sets_[identityOf(item.triplet.key, layout.instanceUID(item))].push_back(number);
        }
    }
}

const StoredSets::Numbers* StoredSets::find(const KLV::Key& key,
                                            const std::optional<Types::UUID>& instance) const {
    const auto found = sets_.find(identityOf(key, instance));
    return found == sets_.end() ? nullptr : &found->second;
}

} // namespace Corvid::Editing
