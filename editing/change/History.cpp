#include "editing/change/History.h"

#include "editing/change/Owners.h"
#include "editing/change/StoredProperties.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/MetadataSet.h"
#include "host/types/UID.h"

#include <ctime>
#include <set>

namespace Corvid::Editing {

namespace {

using mxf::Bytes;
using mxf::HeaderLayout;

/// Static local tags (SMPTE ST 377-1) of the properties that record changes.
enum Tag : Types::u16 {
    generationUID = 0x0102,
    lastModifiedDate = 0x3B02,
    identifications = 0x3B06,
    companyName = 0x3C01,
    productName = 0x3C02,
    versionString = 0x3C04,
    productUID = 0x3C05,
    modificationDate = 0x3C06,
    platform = 0x3C08,
    thisGenerationUID = 0x3C09,
    packageModifiedDate = 0x4404,
};

KLV::Key identificationKey() {
    return KLV::Key({0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01,
                     0x01, 0x30, 0x00});
}

Bytes bytesOf(const Types::SimpleDataType& value) {
    return {value.rawBuffer(), value.rawBuffer() + value.serializedSize()};
}

Bytes bytesOf(const std::string& text) {
    Bytes bytes;
    for (const auto unit : Platform::fromUtf8(text)) {
        bytes.push_back(static_cast<Types::u8>(unit >> 8));
        bytes.push_back(static_cast<Types::u8>(unit & 0xFF));
    }
    return bytes;
}

/// A collection of references, longer by one.
Bytes withReference(const std::optional<Bytes>& old, const Types::UUID& target) {
    constexpr std::size_t head = 8;
    Bytes value(head);
    if (old && old->size() > head) {
        value.insert(value.end(), old->begin() + head, old->end());
    }
    mxf::append(value, {target.rawBuffer(), Types::UUID::fixedSize});
    Types::writeBigEndian(value.data(),
                          static_cast<Types::u32>((value.size() - head) / Types::UUID::fixedSize));
    Types::writeBigEndian(value.data() + 4, static_cast<Types::u32>(Types::UUID::fixedSize));
    return value;
}

class Historian {
public:
    Historian(Changes& changes, const HeaderLayout& before, const HeaderLayout& after,
              const MetaMetadata::Dictionary& dictionary)
        : changes_(changes), before_(before), dictionary_(dictionary), owners_(after, dictionary) {
        for (std::size_t i = 0; i != changes.sets.size(); ++i) {
            if (const auto& instance = changes.sets[i].place.instance) {
                entries_.tryEmplace(*instance, i);
            }
        }
    }

    void add(const Modification& modification) {
        const auto generation =
            Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion);
        const std::size_t preface = requirePreface();
        addDates(modification.time);
        for (ChangedSet& set : changes_.sets) {
            const auto* const definition = dictionary_.findSet(set.place.key);
            if (set.kind != ChangedSet::Kind::removed && definition != nullptr &&
                definition->find(labelOf(generationUID)) != nullptr) {
                give(set, generationUID, bytesOf(generation));
            }
        }
        give(changes_.sets[preface], lastModifiedDate, bytesOf(modification.time));
        addIdentification(preface, modification, generation);
    }

private:
    const Types::UniversalLabel& labelOf(Tag tag) const {
        return dictionary_.findElementByStaticTag(tag)->label();
    }

    /// The entry of a set that changes, made where there is none.
    std::size_t entryOf(std::size_t item) {
        const mxf::LayoutItem& set = before_.items()[item];
        const auto instance = before_.instanceUID(set);
        if (const std::size_t* const found = entries_.find(*instance)) {
            return *found;
        }
        ChangedSet changed;
        changed.place = {set.triplet.key, instance, 0, 1};
        changed.name = nameOf(set.triplet.key, dictionary_);
        entries_.tryEmplace(*instance, changes_.sets.size());
        changes_.sets.push_back(std::move(changed));
        return changes_.sets.size() - 1;
    }

    std::size_t requirePreface() {
        for (std::size_t number = 0; number != before_.items().size(); ++number) {
            const mxf::LayoutItem& item = before_.items()[number];
            if (item.kind == mxf::LayoutItem::Kind::set &&
                KLV::matches(item.triplet.key,
                             Metadata::Structural::StructuralMetadataKeys::preface()) &&
                before_.instanceUID(item)) {
                return entryOf(number);
            }
        }
        throw Exceptions::InvalidFormat("the metadata has no Preface that could record the change; "
                                        "--no-identification does without",
                                        CORVID_HERE);
    }

    /// The value that a set has before.
    std::optional<Bytes> valueBefore(const ChangedSet& set, const PropertyPlace& place) const {
        if (set.kind != ChangedSet::Kind::added) {
            if (const auto item = before_.find(*set.place.instance)) {
                const auto properties =
                    storedProperties(before_, before_.items()[*item], dictionary_);
                if (const auto found = properties.find(place); found != properties.end()) {
                    const Types::ByteView value = found->second.value;
                    return Bytes(value.data, value.data + value.size);
                }
            }
        }
        return std::nullopt;
    }

    /// Gives a set a value, unless that property is changed already.
    void give(ChangedSet& set, Tag tag, Bytes value, OldValue oldValue = OldValue::any) {
        if (ChangedProperty* const property = prepare(set, tag)) {
            property->after = std::move(value);
            property->oldValue = oldValue;
        }
    }

    /// An entry without a value after; null where there is an entry that stays.
    ChangedProperty* prepare(ChangedSet& set, Tag tag) {
        const auto& label = labelOf(tag);
        const PropertyPlace place{XMLBuilder::identityOf(label)};
        for (const ChangedProperty& property : set.properties) {
            if (property.place.identity == place.identity) {
                return nullptr;
            }
        }
        ChangedProperty property;
        property.place = place;
        property.label = label;
        property.name = nameOf(place, label, dictionary_);
        if (set.place.instance) {
            property.before = valueBefore(set, place);
        }
        set.properties.push_back(std::move(property));
        return &set.properties.back();
    }

    /// Gives every package in which something changes that date.
    void addDates(const Types::Timestamp& time) {
        std::set<Types::UUID> packages;
        for (const ChangedSet& set : changes_.sets) {
            addPackageOf(set, packages);
        }
        for (const Types::UUID& instance : packages) {
            if (const auto item = before_.find(instance)) {
                give(changes_.sets[entryOf(*item)], packageModifiedDate, bytesOf(time));
            }
        }
    }

    void addPackageOf(const ChangedSet& set, std::set<Types::UUID>& packages) {
        std::optional<Types::UUID> next = set.place.instance;
        while (next && passed_.add(*next).second) {
            if (isPackage(*next)) {
                packages.insert(*next);
            }
            next = owners_.of(*next);
        }
    }

    bool isPackage(const Types::UUID& instance) const {
        const auto item = before_.find(instance);
        const auto* const definition =
            item ? dictionary_.findSet(before_.items()[*item].triplet.key) : nullptr;
        return definition != nullptr && definition->find(labelOf(packageModifiedDate)) != nullptr;
    }

    void addIdentification(std::size_t preface, const Modification& modification,
                           const Types::UUID& generation) {
        ChangedSet set;
        set.kind = ChangedSet::Kind::added;
        set.place = {identificationKey(),
                     Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion), 0,
                     0};
        set.name = nameOf(identificationKey(), dictionary_);
        give(set, thisGenerationUID, bytesOf(generation));
        give(set, companyName, bytesOf(modification.company));
        give(set, productName, bytesOf(modification.product));
        give(set, versionString, bytesOf(modification.version));
        give(set, productUID, bytesOf(modification.productUID));
        give(set, modificationDate, bytesOf(modification.time));
        give(set, platform, bytesOf(modification.platform));
        ChangedSet& root = changes_.sets[preface];
        set.owner = root.place.instance;
        addReference(root, *set.place.instance);
        changes_.sets.push_back(std::move(set));
    }

    /// Adds the Identification to those of the Preface, of which others may come with the changes.
    void addReference(ChangedSet& preface, const Types::UUID& identification) {
        if (ChangedProperty* const property = prepare(preface, identifications)) {
            property->after = withReference(property->before, identification);
            property->oldValue = OldValue::extended;
            return;
        }
        const PropertyPlace place{XMLBuilder::identityOf(labelOf(identifications))};
        for (ChangedProperty& property : preface.properties) {
            if (property.place.identity == place.identity) {
                property.after = withReference(property.after, identification);
                return;
            }
        }
    }

    Changes& changes_;
    const HeaderLayout& before_;
    const MetaMetadata::Dictionary& dictionary_;
    Owners owners_;
    Types::UuidMap<std::size_t> entries_; ///< of changed sets
    Types::UuidNumbers passed_;           ///< whose owners have been asked for
};

} // namespace

Types::Timestamp currentTime() {
    std::timespec now{};
    std::timespec_get(&now, TIME_UTC);
    std::tm parts{};
    ::gmtime_r(&now.tv_sec, &parts);
    return {static_cast<Types::u16>(parts.tm_year + 1900), static_cast<Types::u8>(parts.tm_mon + 1),
            static_cast<Types::u8>(parts.tm_mday),         static_cast<Types::u8>(parts.tm_hour),
            static_cast<Types::u8>(parts.tm_min),          static_cast<Types::u8>(parts.tm_sec),
            static_cast<Types::u16>(now.tv_nsec / 1000000)};
}

void addHistory(Changes& changes, const HeaderLayout& before, const HeaderLayout& after,
                const Modification& modification, const MetaMetadata::Dictionary& dictionary) {
    if (!changes.empty()) {
        Historian(changes, before, after, dictionary).add(modification);
    }
}

} // namespace Corvid::Editing
