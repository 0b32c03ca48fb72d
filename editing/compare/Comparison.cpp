#include "editing/compare/Comparison.h"

#include "editing/compare/CompareRenamed.h"
#include "editing/compare/DarkSetList.h"
#include "editing/compare/SetComparison.h"
#include "host/mxf/LocalSet.h"

#include <boost/container/small_vector.hpp>

#include <bitset>
#include <deque>
#include <map>
#include <unordered_set>

namespace Corvid::Editing {

namespace {

using Kind = DifferenceKind;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using KeyBytes = std::array<unsigned char, KLV::Key::length>;
/// Nearly always one.
template <class Set> using Sets = boost::container::small_vector<const Set*, 1>;

std::string textOf(const Types::UUID& uuid) { return Platform::toUtf8(uuid.toString()); }

/// Finds out what came back as what among sets with the same name: first those of the same content
/// in their order, then the others in theirs.
/// @param outcome  receives every pair, of sets that are missing, that are too many, and of those
///     of which only an equal one came back.
template <class Set, class Content, class ContentBefore, class Outcome>
void pairUp(const Sets<Set>& before, const Sets<Set>& after, ContentBefore contentBefore,
            Content content, Outcome&& outcome) {
    if (before.size() == 1 && after.size() == 1) {
        outcome.pair(*before.front(), *after.front());
        return;
    }
    // No hash: an attacker could choose contents that share one.
    std::map<std::string, std::deque<const Set*>> byContent;
    for (const Set* set : after) {
        byContent[content(*set)].push_back(set);
    }
    std::unordered_set<const Set*> used;
    Sets<Set> left;
    for (const Set* set : before) {
        const auto found = byContent.find(contentBefore(*set));
        if (found == byContent.end()) {
            left.push_back(set);
        } else if (auto& candidates = found->second; candidates.empty()) {
            outcome.copy(*set);
        } else {
            outcome.pair(*set, *candidates.front());
            used.insert(candidates.front());
            candidates.pop_front();
        }
    }
    auto next = left.begin();
    for (const Set* set : after) {
        if (used.count(set) != 0) {
            continue;
        }
        if (next == left.end()) {
            outcome.extra(*set);
        } else {
            outcome.pair(**next++, *set);
        }
    }
    for (; next != left.end(); ++next) {
        outcome.missing(**next);
    }
}

class Comparer {
public:
    Comparer(PartitionMetadata& before, PartitionMetadata& after, const Renaming& renaming,
             std::size_t listed)
        : before_(before), after_(after), renaming_(renaming), result_{0, 0, Differences(listed)},
          sets_(before.partitionDictionary(), after.partitionDictionary(), renaming,
                result_.differences) {}

    Comparison run() {
        compareRenaming();
        compareNamed();
        compareNameless();
        compareDark();
        return std::move(result_);
    }

    // What pairUp() finds out about sets of the dictionary.
    void pair(const MetadataSet& before, const MetadataSet& after) { sets_.compare(before, after); }
    void copy(const MetadataSet& set) { sets_.add(Kind::mergedCopy, set); }
    void missing(const MetadataSet& set) { sets_.add(Kind::missingSet, set); }
    void extra(const MetadataSet& set);

    // And about others.
    void pair(const ListedDarkSet& before, const ListedDarkSet& after);
    void copy(const ListedDarkSet& set) {
        // Those without identifier were two.
        add(set.instanceUID ? Kind::mergedCopy : Kind::missingSet, set);
    }
    void missing(const ListedDarkSet& set) { add(Kind::missingSet, set); }
    void extra(const ListedDarkSet& set) { add(Kind::extraSet, set); }

private:
    void add(Kind kind, const ListedDarkSet& set, std::string detail = {}) {
        result_.differences.add({kind, Platform::toUtf8(set.key.toString()),
                                 set.instanceUID ? textOf(*set.instanceUID) : "", "",
                                 std::move(detail), DifferenceIdentifiers::both});
    }
    void compareRenaming();
    void compareNamed();
    void compareNameless();
    void compareDark();
    void compareTags(const std::vector<ListedDarkSet>& darkSets);

    PartitionMetadata& before_;
    PartitionMetadata& after_;
    const Renaming& renaming_;
    Comparison result_;
    SetComparison sets_;
    Types::UuidMap<Types::UUID> origins_; ///< the renaming the other way round
    /// Sets without an InstanceUID that both partitions have.
    std::vector<const MetadataSet*> nameless_;
    std::map<KeyBytes, std::deque<const MetadataSet*>> unclaimed_;
};

void Comparer::compareRenaming() {
    renaming_.forEach([this](const Types::UUID& before, const Types::UUID& after) {
        const auto [origin, isNew] = origins_.tryEmplace(after, before);
        if (!isNew) {
            result_.differences.add({Kind::sharedIdentifier, "", textOf(before), "",
                                     "became " + textOf(after) + " as " + textOf(origin) + " did",
                                     DifferenceIdentifiers::both});
        }
    });
}

void Comparer::extra(const MetadataSet& set) {
    Difference difference = SetComparison::differenceOf(Kind::extraSet, set);
    if (const Types::UUID* const origin = origins_.find(set.instanceUID())) {
        difference.instanceUID = textOf(*origin);
    }
    result_.differences.add(std::move(difference));
}

void Comparer::compareNamed() {
    Types::UuidMap<std::pair<Sets<MetadataSet>, Sets<MetadataSet>>> groups;
    for (const MetadataSet* set : before_) {
        ++result_.sets;
        if (set->metaMetadataSet() == nullptr) {
            continue;
        }
        result_.properties += set->countValues();
        if (!set->hasInstanceUID()) {
            nameless_.push_back(set);
            continue;
        }
        groups[renaming_.of(set->instanceUID())].first.push_back(set);
    }
    for (const MetadataSet* set : after_) {
        if (set->metaMetadataSet() == nullptr) {
            continue;
        }
        auto* const group = groups.find(set->instanceUID());
        if (set->hasInstanceUID() && group != nullptr) {
            group->second.push_back(set);
        } else {
            unclaimed_[set->key().forMatching()].push_back(set);
        }
    }
    groups.forEach([this](const Types::UUID&, const auto& group) {
        pairUp(
            group.first, group.second,
            [this](const MetadataSet& set) { return sets_.contentBefore(set); },
            [this](const MetadataSet& set) { return sets_.content(set); }, *this);
    });
}

void Comparer::compareNameless() {
    for (const MetadataSet* set : nameless_) {
        auto& candidates = unclaimed_[set->key().forMatching()];
        if (candidates.empty()) {
            missing(*set);
            continue;
        }
        const MetadataSet& found = *candidates.front();
        candidates.pop_front();
        if (found.hasInstanceUID()) {
            sets_.add(Kind::newInstanceUID, *set);
        }
        sets_.compare(*set, found);
    }
    for (const auto& [key, candidates] : unclaimed_) {
        for (const MetadataSet* set : candidates) {
            extra(*set);
        }
    }
}

void Comparer::compareDark() {
    const auto before = listDarkSets(before_);
    const auto after = listDarkSets(after_);
    result_.sets += static_cast<std::size_t>(std::distance(before_.darkBegin(), before_.darkEnd()));
    std::map<KLV::Key, std::pair<Sets<ListedDarkSet>, Sets<ListedDarkSet>>> groups;
    for (const auto& set : before) {
        groups[set.key].first.push_back(&set);
    }
    for (const auto& set : after) {
        groups[set.key].second.push_back(&set);
    }
    const auto content = [](const ListedDarkSet& set) {
        return std::to_string(set.berLength) + ":" + set.value;
    };
    for (const auto& [key, group] : groups) {
        pairUp(group.first, group.second, content, content, *this);
    }
    compareTags(before);
}

/// The bytes of dark sets hold local tags; what they mean is in the primer pack alone.
void Comparer::compareTags(const std::vector<ListedDarkSet>& darkSets) {
    std::bitset<0x10000> compared;
    for (const ListedDarkSet& set : darkSets) {
        mxf::LocalSet properties(
            set.key, {reinterpret_cast<const Types::u8*>(set.value.data()), set.value.size()});
        while (const auto property = properties.next()) {
            const Types::LocalTag tag(property->tag);
            const auto* const old = before_.partitionDictionary().find(tag, true);
            const auto* const fresh = after_.partitionDictionary().find(tag, true);
            if (!compared.test(property->tag) && old != nullptr &&
                (fresh == nullptr || *fresh != *old)) {
                add(Kind::missingPrimerEntry, set,
                    "local tag " + Platform::toUtf8(tag.toString(Types::dottedHexadecimal)) +
                        " was " + Platform::toUtf8(old->toString()));
            }
            compared.set(property->tag);
        }
    }
}

void Comparer::pair(const ListedDarkSet& before, const ListedDarkSet& after) {
    if (before.value != after.value) {
        add(Kind::otherValue, before,
            std::to_string(before.value.size()) + " bytes came back as " +
                std::to_string(after.value.size()) + " others");
    }
    if (before.berLength != after.berLength) {
        add(Kind::otherValue, before,
            "a length of " + std::to_string(before.berLength) + " octets came back with " +
                std::to_string(after.berLength));
    }
}

} // namespace

Comparison compareRenamed(PartitionMetadata& before, PartitionMetadata& after,
                          const Renaming& renaming, std::size_t listed) {
    return Comparer(before, after, renaming, listed).run();
}

Comparison compare(PartitionMetadata& before, PartitionMetadata& after, std::size_t listed) {
    return compareRenamed(before, after, {}, listed);
}

} // namespace Corvid::Editing
