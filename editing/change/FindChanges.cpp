#include "editing/change/FindChanges.h"

#include "editing/change/CodedMetadata.h"
#include "editing/change/Owners.h"
#include "editing/change/StoredProperties.h"
#include "host/dictionary/MetaElement.h"
#include "host/mxf/rewrite/ObjectDirectory.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <cassert>
#include <set>

namespace Corvid::Editing {

namespace {

using Kind = ChangedSet::Kind;
using mxf::Bytes;
using mxf::HeaderLayout;
using mxf::LayoutItem;
using Types::ByteView;

Bytes copyOf(ByteView bytes) { return {bytes.data, bytes.data + bytes.size}; }

bool isSame(ByteView a, ByteView b) {
    return a.size == b.size && std::equal(a.data, a.data + a.size, b.data);
}

/// Directories of objects follow what they list.
bool isDark(const LayoutItem& item) {
    return item.kind == LayoutItem::Kind::dark && !mxf::isObjectDirectory(item.triplet.key);
}

/// Whether values of the root of a directory of objects say the same: the offset at their end is
/// that of the directory, and follows it.
bool isSameButForOffset(ByteView a, ByteView b) {
    constexpr std::size_t offsetSize = 8;
    return isSame(a, b) || (a.size == b.size && a.size >= offsetSize &&
                            std::equal(a.data, a.data + a.size - offsetSize, b.data));
}

/// The value of a KLV, in its layout, as a key of a map.
std::string textOf(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data), bytes.size};
}

/// What a set of timecode counts in (SMPTE ST 377-1).
class TimecodeCounts {
public:
    explicit TimecodeCounts(const MetaMetadata::Dictionary& dictionary)
        : framesPerSecond_(placeOf(0x1502, dictionary)), dropFrame_(placeOf(0x1503, dictionary)) {}

    std::optional<TimecodeCount> of(const StoredProperties& properties) const {
        const auto rate = properties.find(framesPerSecond_);
        if (rate == properties.end() || rate->second.value.size != sizeof(Types::u16)) {
            return std::nullopt;
        }
        const auto drop = properties.find(dropFrame_);
        const bool isThere = drop != properties.end() && drop->second.value.size == 1;
        return TimecodeCount{Types::readBigEndian<Types::u16>(rate->second.value.data),
                             isThere && *drop->second.value.data != 0};
    }

private:
    static PropertyPlace placeOf(Types::u16 staticTag, const MetaMetadata::Dictionary& dictionary) {
        return {XMLBuilder::identityOf(dictionary.findElementByStaticTag(staticTag)->label())};
    }

    PropertyPlace framesPerSecond_;
    PropertyPlace dropFrame_;
};

class Finder {
public:
    Finder(const HeaderLayout& before, const HeaderLayout& after,
           const MetaMetadata::Dictionary& dictionary)
        : before_(before), after_(after), dictionary_(dictionary), setsBefore_(before),
          setsAfter_(after), timecodeCounts_(dictionary) {}

    Changes find() {
        for (const auto& [identity, numbers] : setsAfter_.all()) {
            const auto found = setsBefore_.all().find(identity);
            pair(found == setsBefore_.all().end() ? Numbers() : found->second, numbers);
        }
        for (const auto& [identity, numbers] : setsBefore_.all()) {
            if (setsAfter_.all().count(identity) == 0) {
                pair(numbers, {});
            }
        }
        std::sort(found_.begin(), found_.end(),
                  [](const Found& a, const Found& b) { return a.order < b.order; });
        Changes changes;
        for (Found& found : found_) {
            changes.sets.push_back(std::move(found.set));
        }
        changes.pairs = std::move(pairs_);
        giveOwners(changes);
        findDark(changes);
        return changes;
    }

private:
    using Numbers = StoredSets::Numbers;
    struct Found {
        std::pair<bool, std::size_t> order; ///< removed ones last
        ChangedSet set;
    };

    /// Sets of one identity. The most usual case by far is one of each.
    void pair(Numbers before, Numbers after) {
        const std::size_t alike = before.size();
        Numbers places(alike);
        for (std::size_t i = 0; i != alike; ++i) {
            places[i] = i;
        }
        if (before.size() > 1 || after.size() > 1) {
            dropEqual(before, places, after);
        }
        const std::size_t both = std::min(before.size(), after.size());
        for (std::size_t i = 0; i != both; ++i) {
            compare(Kind::changed, &before[i], &after[i], places[i], alike);
        }
        for (std::size_t i = both; i < after.size(); ++i) {
            compare(Kind::added, nullptr, &after[i], alike + i, alike);
        }
        for (std::size_t i = both; i < before.size(); ++i) {
            compare(Kind::removed, &before[i], nullptr, places[i], alike);
        }
    }

    /// Takes those away that say the same.
    void dropEqual(Numbers& before, Numbers& places, Numbers& after) {
        std::map<std::string, Numbers> bySaying;
        for (auto number = after.rbegin(); number != after.rend(); ++number) {
            bySaying[saying(after_, *number)].push_back(*number);
        }
        std::set<std::size_t> dropped;
        Numbers left;
        Numbers leftPlaces;
        for (std::size_t i = 0; i != before.size(); ++i) {
            Numbers& same = bySaying[saying(before_, before[i])];
            if (same.empty()) {
                left.push_back(before[i]);
                leftPlaces.push_back(places[i]);
            } else {
                dropped.insert(same.back());
                pairs_.emplace_back(before[i], same.back());
                same.pop_back();
            }
        }
        before = std::move(left);
        places = std::move(leftPlaces);
        after.erase(std::remove_if(after.begin(), after.end(),
                                   [&](std::size_t number) { return dropped.count(number) != 0; }),
                    after.end());
    }

    /// All that a set says, whatever its tags and the order of its properties.
    std::string saying(const HeaderLayout& layout, std::size_t number) const {
        std::string text;
        for (const auto& [place, property] :
             storedProperties(layout, layout.items()[number], dictionary_)) {
            text.append(place.identity.begin(), place.identity.end());
            text += std::to_string(property.value.size) + ':' + textOf(property.value);
        }
        return text;
    }

    void compare(Kind kind, const std::size_t* before, const std::size_t* after, std::size_t nth,
                 std::size_t alike) {
        StoredProperties old;
        StoredProperties wanted;
        if (before != nullptr) {
            old = storedProperties(before_, before_.items()[*before], dictionary_);
        }
        if (after != nullptr) {
            wanted = storedProperties(after_, after_.items()[*after], dictionary_);
        }
        const HeaderLayout& layout = after == nullptr ? before_ : after_;
        const std::size_t number = after == nullptr ? *before : *after;
        if (before != nullptr && after != nullptr) {
            pairs_.emplace_back(*before, *after);
        }
        const LayoutItem& item = layout.items()[number];
        const auto isEqual = mxf::isObjectRoot(item.triplet.key) ? isSameButForOffset : isSame;
        ChangedSet set;
        for (const auto& [place, property] : wanted) {
            const auto found = old.find(place);
            if (found == old.end()) {
                set.properties.push_back(changed(place, nullptr, &property));
            } else if (!isEqual(found->second.value, property.value)) {
                set.properties.push_back(changed(place, &found->second, &property));
            }
        }
        for (const auto& [place, property] : old) {
            if (wanted.count(place) == 0) {
                set.properties.push_back(changed(place, &property, nullptr));
            }
        }
        if (kind == Kind::changed && set.properties.empty()) {
            return;
        }
        set.kind = kind;
        set.place = {item.triplet.key, layout.instanceUID(item), nth, alike};
        set.name = nameOf(item.triplet.key, dictionary_);
        set.countBefore = timecodeCounts_.of(old);
        set.countAfter = timecodeCounts_.of(wanted);
        set.number = number;
        found_.push_back({{after == nullptr, number}, std::move(set)});
    }

    ChangedProperty changed(const PropertyPlace& place, const StoredProperty* before,
                            const StoredProperty* after) const {
        assert(before != nullptr || after != nullptr);
        ChangedProperty property;
        property.place = place;
        property.label = (after == nullptr ? *before : *after).label;
        property.name = nameOf(place, property.label, dictionary_);
        if (before != nullptr) {
            property.before = copyOf(before->value);
        }
        if (after != nullptr) {
            property.after = copyOf(after->value);
        }
        return property;
    }

    void giveOwners(Changes& changes) const {
        const bool hasNew =
            std::any_of(changes.sets.begin(), changes.sets.end(),
                        [](const ChangedSet& set) { return set.kind == Kind::added; });
        if (!hasNew) {
            return;
        }
        const Owners owners(after_, dictionary_);
        for (ChangedSet& set : changes.sets) {
            if (set.kind == Kind::added && set.place.instance) {
                set.owner = owners.of(*set.place.instance);
            }
        }
    }

    /// KLVs that are no sets belong together by key: first those that are the same, then the others
    /// in their order.
    void findDark(Changes& changes) const {
        struct Both {
            Numbers before;
            Numbers after;
        };
        std::map<std::pair<KLV::Key, std::string>, Numbers> free;
        for (std::size_t number = before_.items().size(); number-- != 0;) {
            const LayoutItem& item = before_.items()[number];
            if (isDark(item)) {
                free[{item.triplet.key, textOf(before_.value(item))}].push_back(number);
            }
        }
        std::map<KLV::Key, Both> others;
        for (std::size_t number = 0; number != after_.items().size(); ++number) {
            const LayoutItem& item = after_.items()[number];
            if (!isDark(item)) {
                continue;
            }
            const auto found = free.find({item.triplet.key, textOf(after_.value(item))});
            if (found != free.end() && !found->second.empty()) {
                changes.pairs.emplace_back(found->second.back(), number);
                found->second.pop_back();
            } else {
                others[item.triplet.key].after.push_back(number);
            }
        }
        for (const auto& [identity, numbers] : free) {
            Numbers& left = others[identity.first].before;
            left.insert(left.end(), numbers.begin(), numbers.end());
        }
        for (auto& [key, both] : others) {
            std::sort(both.before.begin(), both.before.end());
            for (std::size_t i = 0; i < std::max(both.before.size(), both.after.size()); ++i) {
                ChangedDark dark;
                dark.key = key;
                if (i < both.before.size()) {
                    dark.number = both.before[i];
                    dark.before = copyOf(before_.value(before_.items()[dark.number]));
                }
                if (i < both.after.size()) {
                    dark.number = both.after[i];
                    dark.after = copyOf(after_.value(after_.items()[dark.number]));
                }
                if (dark.before && dark.after) {
                    changes.pairs.emplace_back(both.before[i], both.after[i]);
                }
                changes.dark.push_back(std::move(dark));
            }
        }
    }

    const HeaderLayout& before_;
    const HeaderLayout& after_;
    const MetaMetadata::Dictionary& dictionary_;
    StoredSets setsBefore_;
    StoredSets setsAfter_;
    TimecodeCounts timecodeCounts_;
    std::vector<Found> found_;
    std::vector<std::pair<std::size_t, std::size_t>> pairs_;
};

} // namespace

Changes findChanges(const HeaderLayout& before, const HeaderLayout& after,
                    const MetaMetadata::Dictionary& dictionary) {
    return Finder(before, after, dictionary).find();
}

Changes findChanges(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& after) {
    const CodedMetadata old(before);
    const CodedMetadata wanted(after);
    return findChanges(old.layout(), wanted.layout(), *after.partitionDictionary().dictionary());
}

} // namespace Corvid::Editing
