#include "inspection/DefinitionUses.h"

#include "host/dictionary/MetaAttribute.h"

namespace Corvid::Inspection {

namespace {

template <class Map, class Key> const DefinitionUses::Sets& setsOf(const Map& map, const Key* key) {
    static const DefinitionUses::Sets none;
    const auto found = map.find(key);
    return found == map.end() ? none : found->second;
}

} // namespace

DefinitionUses::DefinitionUses(const MetaMetadata::Dictionary& dictionary) {
    const auto end = dictionary.metaMetadataSetEnd();
    for (auto i = dictionary.metaMetadataSetBegin(); i != end; ++i) {
        const MetaMetadata::MetaMetadataSet& set = **i;
        const auto* const parent = set.parent();
        if (parent != nullptr) {
            heirs_[parent].push_back(&set);
        }
        for (const auto* ancestor = parent; ancestor != nullptr; ancestor = ancestor->parent()) {
            ++descendants_[ancestor];
        }
        // Those of the ancestors come first.
        const auto& attributes = set.attributes();
        for (std::size_t own = parent == nullptr ? 0 : parent->attributes().size();
             own != attributes.size(); ++own) {
            // A set's attributes are all of this kind.
            const auto& attribute =
                static_cast<const MetaMetadata::MetaAttribute&>(*attributes[own]);
            sets_[&attribute.metaElement()].push_back(&set);
        }
    }
}

const DefinitionUses::Sets& DefinitionUses::heirs(const MetaMetadata::MetaMetadataSet& set) const {
    return setsOf(heirs_, &set);
}

std::size_t DefinitionUses::countDescendants(const MetaMetadata::MetaMetadataSet& set) const {
    const auto found = descendants_.find(&set);
    return found == descendants_.end() ? 0 : found->second;
}

const DefinitionUses::Sets& DefinitionUses::setsWith(
    const MetaMetadata::MetaElement& property) const {
    return setsOf(sets_, &property);
}

} // namespace Corvid::Inspection
