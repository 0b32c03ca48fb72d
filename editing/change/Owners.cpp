#include "editing/change/Owners.h"

#include "editing/change/StoredProperties.h"
#include "host/dictionary/MetaCollectionElement.h"

namespace Corvid::Editing {

namespace {

constexpr std::size_t collectionHead = 8; ///< number and size of the items, in bytes

} // namespace

bool isStrongReference(const Types::UniversalLabel& label,
                       const MetaMetadata::Dictionary& dictionary) {
    const auto* const definition = dictionary.findElement(label);
    if (definition == nullptr) {
        return false;
    }
    const auto type =
        definition->isCollection()
            ? static_cast<const MetaMetadata::MetaCollectionElement&>(*definition).dataSubType()
            : definition->dataType();
    return type == Types::Identifiers::StrongReference;
}

std::vector<Types::UUID> targetsOf(const Types::UniversalLabel& label, Types::ByteView value,
                                   const MetaMetadata::Dictionary& dictionary) {
    std::vector<Types::UUID> targets;
    if (isStrongReference(label, dictionary)) {
        const bool isOne = !dictionary.findElement(label)->isCollection();
        for (std::size_t at = isOne ? 0 : collectionHead; at + Types::UUID::fixedSize <= value.size;
             at += Types::UUID::fixedSize) {
            targets.emplace_back(Types::ByteView{value.data + at, Types::UUID::fixedSize});
        }
    }
    return targets;
}

Owners::Owners(const mxf::HeaderLayout& layout, const MetaMetadata::Dictionary& dictionary) {
    for (const mxf::LayoutItem& item : layout.items()) {
        const auto instance = item.kind == mxf::LayoutItem::Kind::set
                                  ? layout.instanceUID(item)
                                  : std::optional<Types::UUID>();
        if (!instance) {
            continue;
        }
        for (const auto& [place, property] : storedProperties(layout, item, dictionary)) {
            if (property.label) {
                for (const auto& target : targetsOf(*property.label, property.value, dictionary)) {
                    if (owners_.find(target) == nullptr) {
                        owners_[target] = *instance;
                    }
                }
            }
        }
    }
}

std::optional<Types::UUID> Owners::of(const Types::UUID& instance) const {
    const auto* const owner = owners_.find(instance);
    return owner == nullptr ? std::nullopt : std::make_optional(*owner);
}

} // namespace Corvid::Editing
