#include "editing/change/PlaceChanges.h"

#include "editing/change/StoredProperties.h"
#include "editing/values/ValueText.h"
#include "host/base/Exceptions.h"
#include "host/base/Hex.h"
#include "host/base/Shortened.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"
#include "host/types/Factories.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

using mxf::Bytes;
using mxf::HeaderLayout;
using mxf::LayoutItem;
using Types::ByteView;

constexpr std::size_t collectionHead = 8; ///< number and size of the items, in bytes

/// As people read it where its type is known and no collection, else its bytes.
std::string shownValue(const StoredProperty* property, const MetaMetadata::Dictionary& dictionary) {
    constexpr std::size_t shown = 64; // characters or digits
    if (property == nullptr) {
        return "nothing";
    }
    const auto* const definition =
        property->label ? dictionary.findElement(*property->label) : nullptr;
    if (definition != nullptr) {
        if (const auto value =
                Types::Factories::fromBytes(definition->dataType(), property->value)) {
            return "'" + shortened(valueText(*value), shown) + "'";
        }
    }
    return "bytes " + shortened(Hex::encoded<std::string>(property->value.data,
                                                          property->value.size, Hex::lower),
                                shown);
}

bool isSame(const StoredProperty* a, const StoredProperty* b) {
    if (a == nullptr || b == nullptr) {
        return a == b;
    }
    return a->value.size == b->value.size &&
           std::equal(a->value.data, a->value.data + a->value.size, b->value.data);
}

const StoredProperty* find(const StoredProperties& properties, const PropertyPlace& place) {
    const auto found = properties.find(place);
    return found == properties.end() ? nullptr : &found->second;
}

/// A collection with the last item of another at its end.
Bytes extended(const StoredProperty* old, const Bytes& wanted) {
    Bytes value(wanted.begin(), wanted.begin() + collectionHead);
    const std::size_t itemSize = Types::readBigEndian<Types::u32>(value.data() + 4);
    if (old != nullptr && old->value.size > collectionHead) {
        mxf::append(value, {old->value.data + collectionHead, old->value.size - collectionHead});
    }
    mxf::append(value, {wanted.data() + wanted.size() - itemSize, itemSize});
    Types::writeBigEndian(value.data(),
                          static_cast<Types::u32>((value.size() - collectionHead) / itemSize));
    return value;
}

class Placing {
public:
    Placing(const HeaderLayout& copy, const HeaderLayout& chosen, const std::string& where,
            const MetaMetadata::Dictionary& dictionary)
        : copy_(copy), chosen_(chosen), where_(where), dictionary_(dictionary), sets_(copy),
          chosenSets_(chosen) {}

    mxf::HeaderEdit place(const Changes& changes) {
        for (const ChangedSet& set : changes.sets) {
            switch (set.kind) {
            case ChangedSet::Kind::added:
                add(set);
                break;
            case ChangedSet::Kind::removed:
                edit_.removed.push_back(requireSame(set));
                break;
            case ChangedSet::Kind::changed:
                change(set);
                break;
            }
        }
        for (const ChangedDark& dark : changes.dark) {
            change(dark);
        }
        return std::move(edit_);
    }

private:
    [[noreturn]] void refuse(const ChangedSet& set, const std::string& what) const {
        throw Exceptions::InvalidFormat(
            where_ + ": set " + set.name +
                (set.place.instance ? " " + Platform::toUtf8(set.place.instance->toString()) : "") +
                ": " + what,
            CORVID_HERE);
    }

    bool isChosen() const noexcept { return &copy_ == &chosen_; }

    /// The number of a set in a layout; nothing where it is not certain which one is meant.
    static std::optional<std::size_t> find(const StoredSets& sets, const SetPlace& place) {
        const auto* const numbers = sets.find(place.key, place.instance);
        if (numbers == nullptr || numbers->size() != place.alike) {
            return std::nullopt;
        }
        return (*numbers)[place.nth];
    }

    std::size_t require(const ChangedSet& set) const {
        if (const auto number = find(sets_, set.place)) {
            return *number;
        }
        refuse(set, sets_.find(set.place.key, set.place.instance) == nullptr
                        ? "it is not here, or its properties can't be separated"
                        : "there are several with this identifier, so it is not certain which one "
                          "is meant");
    }

    StoredProperties propertiesOf(const HeaderLayout& layout, std::size_t number) const {
        return storedProperties(layout, layout.items()[number], dictionary_);
    }

    /// The properties that a set has in the chosen copy.
    StoredProperties chosenProperties(const ChangedSet& set) const {
        const auto number = find(chosenSets_, set.place);
        return number ? propertiesOf(chosen_, *number) : StoredProperties();
    }

    void requireSame(const ChangedSet& set, const std::string& property, const StoredProperty* own,
                     const StoredProperty* chosen) const {
        if (!isSame(own, chosen)) {
            refuse(set, "property " + property + ": has " + shownValue(own, dictionary_) +
                            ", expected " + shownValue(chosen, dictionary_) +
                            " as in the copy that the edit was made for");
        }
    }

    /// Finds a set that is removed, which must be as it is in the chosen copy.
    std::size_t requireSame(const ChangedSet& set) const {
        const std::size_t number = require(set);
        if (!isChosen()) {
            const StoredProperties own = propertiesOf(copy_, number);
            const StoredProperties chosen = chosenProperties(set);
            for (const StoredProperties* all : {&own, &chosen}) {
                for (const auto& [place, property] : *all) {
                    requireSame(set, nameOf(place, property.label, dictionary_),
                                Editing::find(own, place), Editing::find(chosen, place));
                }
            }
        }
        return number;
    }

    void change(const ChangedSet& set) {
        mxf::SetChange change;
        change.item = require(set);
        const StoredProperties own = propertiesOf(copy_, change.item);
        const StoredProperties chosen = isChosen() ? StoredProperties() : chosenProperties(set);
        for (const ChangedProperty& property : set.properties) {
            const StoredProperty* const old = Editing::find(own, property.place);
            if (!isChosen() && property.oldValue == OldValue::same) {
                requireSame(set, property.name, old, Editing::find(chosen, property.place));
            }
            std::optional<Bytes> value = property.after;
            if (property.oldValue == OldValue::extended) {
                value = extended(old, *value);
            }
            if (old != nullptr) {
                change.properties.push_back({old->name, std::move(value)});
            } else if (value) {
                change.added.push_back(newProperty(set, property, std::move(*value)));
            }
        }
        if (!change.properties.empty() || !change.added.empty()) {
            edit_.changedSets.push_back(std::move(change));
        }
    }

    mxf::NewProperty newProperty(const ChangedSet& set, const ChangedProperty& property,
                                 Bytes value) const {
        if (!property.label) {
            refuse(set, "property " + property.name +
                            ": no label is known for this tag, so it can't be added");
        }
        const auto* const definition = dictionary_.findElement(*property.label);
        return {*property.label, std::move(value),
                definition == nullptr ? Types::u16{0} : definition->staticLocalTag()};
    }

    void add(const ChangedSet& set) {
        if (set.place.instance && copy_.find(*set.place.instance)) {
            refuse(set, "another set has this InstanceUID already");
        }
        mxf::NewSet added;
        added.key = set.place.key;
        added.after = lastSet();
        if (set.owner) {
            const auto owner = after_.find(*set.owner);
            const auto item =
                owner == after_.end() ? copy_.find(*set.owner) : std::optional(owner->second);
            if (!item) {
                refuse(set, "the set that owns it, " + Platform::toUtf8(set.owner->toString()) +
                                ", is not here");
            }
            added.after = *item;
        }
        if (set.place.instance) {
            const auto& label = Metadata::Structural::StructuralMetadataULs::instanceUID();
            const auto& bytes = set.place.instance->bytes();
            added.properties.push_back({label, Bytes(bytes.begin(), bytes.end()),
                                        dictionary_.findElement(label)->staticLocalTag()});
            after_.emplace(*set.place.instance, added.after);
        }
        for (const ChangedProperty& property : set.properties) {
            added.properties.push_back(newProperty(set, property, *property.after));
        }
        edit_.newSets.push_back(std::move(added));
    }

    /// Where sets go that no other owns: after all that is not fill.
    std::size_t lastSet() const {
        std::size_t last = copy_.items().size() - 1;
        while (last != 0 && copy_.items()[last].kind == LayoutItem::Kind::fill) {
            --last;
        }
        return last;
    }

    void change(const ChangedDark& dark) {
        const auto refuseDark = [&](const char* what) {
            throw Exceptions::InvalidFormat(where_ + ": KLV " +
                                                Platform::toUtf8(dark.key.toString()) + ": " + what,
                                            CORVID_HERE);
        };
        if (!dark.before) {
            refuseDark("its properties can't be separated, so it can't be added");
        }
        if (dark_.empty()) {
            for (std::size_t number = 0; number != copy_.items().size(); ++number) {
                const LayoutItem& item = copy_.items()[number];
                if (item.kind == LayoutItem::Kind::dark) {
                    dark_[identityOf(item.triplet.key, copy_.value(item))].push_back(number);
                }
            }
        }
        auto& numbers = dark_[identityOf(dark.key, mxf::viewOf(*dark.before))];
        if (numbers.empty()) {
            refuseDark("it is not here, or differs");
        }
        if (dark.after) {
            edit_.changedDark.push_back({numbers.back(), *dark.after});
        } else {
            edit_.removed.push_back(numbers.back());
        }
        numbers.pop_back();
    }

    static std::string identityOf(const KLV::Key& key, ByteView value) {
        std::string identity(key.bytes().begin(), key.bytes().end());
        return identity.append(reinterpret_cast<const char*>(value.data), value.size);
    }

    const HeaderLayout& copy_;
    const HeaderLayout& chosen_;
    const std::string& where_;
    const MetaMetadata::Dictionary& dictionary_;
    StoredSets sets_;
    StoredSets chosenSets_;
    std::map<Types::UUID, std::size_t> after_; ///< where new sets are
    std::map<std::string, StoredSets::Numbers> dark_;
    mxf::HeaderEdit edit_;
};

} // namespace

mxf::HeaderEdit placeChanges(const Changes& changes, const HeaderLayout& copy,
                             const HeaderLayout& chosen, const std::string& where,
                             const MetaMetadata::Dictionary& dictionary) {
    return Placing(copy, chosen, where, dictionary).place(changes);
}

} // namespace Corvid::Editing
