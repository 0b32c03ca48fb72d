#include "XMLBuilder/json/PropertyKeys.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/dictionary/Registers.h"

#include <map>

namespace Corvid::XMLBuilder {

namespace {

bool isRegistered(const MetaMetadata::MetaElement& property) {
    const auto entry = MetaMetadata::Registers::properties().find(property.label());
    return entry && entry->isRegistered();
}

} // namespace

std::string qualifiedKeyOf(const MetaMetadata::MetaDefinition& definition) {
    const std::u16string_view prefix = textOf(definition, "XMLDefaultPrefix");
    const auto* const units = reinterpret_cast<const Utf16Unit*>(prefix.data());
    return Platform::toUtf8(units, prefix.size()) + ":" + MetaMetadata::tagName(definition);
}

const PropertyKeys::Keys& PropertyKeys::keysOf(const MetaMetadata::MetaMetadataSet& setClass) {
    const auto [place, isNew] = classes_.try_emplace(&setClass);
    if (isNew) {
        struct Owners {
            unsigned all = 0;
            unsigned registers = 0;
        };
        std::map<std::string, Owners> symbols;
        for (const auto& attribute : setClass.attributes()) {
            const auto& property = *attribute->facts().definition;
            Owners& owners = symbols[MetaMetadata::tagName(property)];
            ++owners.all;
            owners.registers += isRegistered(property) ? 1 : 0;
        }
        for (const auto& attribute : setClass.attributes()) {
            const auto& property = *attribute->facts().definition;
            std::string symbol = MetaMetadata::tagName(property);
            const Owners& owners = symbols[symbol];
            const bool isPlain =
                owners.all == 1 || (owners.registers == 1 && isRegistered(property));
            place->second[&property] = isPlain ? std::move(symbol) : qualifiedKeyOf(property);
        }
    }
    return place->second;
}

const std::string& PropertyKeys::keyOf(const MetaMetadata::MetaMetadataSet& setClass,
                                       const MetaMetadata::MetaElement& property) {
    const Keys& keys = keysOf(setClass);
    if (const auto found = keys.find(&property); found != keys.end()) {
        return found->second;
    }
    const auto [place, isNew] = elsewhere_.try_emplace(&property);
    if (isNew) {
        place->second = qualifiedKeyOf(property);
    }
    return place->second;
}

} // namespace Corvid::XMLBuilder
