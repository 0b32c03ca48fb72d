#include "editing/change/MatchSets.h"

#include "editing/RenameSets.h"
#include "editing/StoredBytes.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace Corvid::Editing {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using Sets = std::vector<const MetadataSet*>;

/// The strong references of an element, and whether it has any of another kind.
struct References final : Metadata::Visitors::ElementVisitor {
    void visit(const Metadata::ReferenceBatchElement& element) override { addAll(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { addAll(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        isReference = true;
        if (element.value() != nullptr) {
            add(*element.value());
        }
    }
    void visit(const Metadata::BatchElement&) override {}
    void visit(const Metadata::ArrayElement&) override {}
    void visit(const Metadata::SimpleElement&) override {}

    void addAll(const Metadata::ReferenceCollectionElement& element) {
        isReference = true;
        for (Types::u32 i = 0; i != element.size(); ++i) {
            add(element.at(i));
        }
    }
    void add(const Types::Reference& reference) {
        if (reference.isStrong()) {
            strong.push_back(&reference);
        }
    }

    std::vector<const Types::Reference*> strong;
    bool isReference = false;
};

class Matcher {
public:
    Matcher(const PartitionMetadata& before, const PartitionMetadata& after)
        : before_(before), after_(after) {}

    Renaming match() {
        for (const MetadataSet* const set : after_) {
            const auto same =
                set->hasInstanceUID() ? before_.resolve(set->instanceUID()) : Metadata::Targets();
            if (!same.empty() && KLV::matches(same.front().key(), set->key()) &&
                isFree(same.front())) {
                pair(same.front(), *set);
            }
        }
        const auto& prefaceKey = Metadata::Structural::StructuralMetadataKeys::preface();
        const auto prefaces = before_.find(prefaceKey);
        const auto others = after_.find(prefaceKey);
        if (!prefaces.empty() && !others.empty()) {
            pairRest({prefaces.front()}, {others.front()});
        }
        pairAllTargets();
        const Sets roots = freeRoots(before_);
        const Sets otherRoots = freeRoots(after_);
        pairAlike(roots, otherRoots);
        pairRest(roots, otherRoots);
        pairAllTargets();
        return namesOfPairs();
    }

private:
    bool isFree(const MetadataSet& set) const { return matched_.count(&set) == 0; }

    void pair(const MetadataSet& before, const MetadataSet& after) {
        matched_[&before] = &after;
        matched_[&after] = &before;
        pairs_.emplace_back(&before, &after);
    }

    /// The sets that no set refers to strongly.
    Sets freeRoots(const PartitionMetadata& metadata) const {
        std::unordered_set<const MetadataSet*> owned;
        for (const MetadataSet* const set : metadata) {
            for (const auto& [label, element] : set->made()) {
                for (const MetadataSet* const target : freeTargets(metadata, *element)) {
                    owned.insert(target);
                }
            }
        }
        Sets roots;
        std::copy_if(metadata.begin(), metadata.end(), std::back_inserter(roots),
                     [&](const MetadataSet* set) { return isFree(*set) && owned.count(set) == 0; });
        return roots;
    }

    /// Goes on from all sets that are matched so far, and those that are then.
    void pairAllTargets() {
        for (; done_ != pairs_.size(); ++done_) {
            pairTargets(*pairs_[done_].first, *pairs_[done_].second);
        }
    }

    /// Matches those that the same properties of two sets refer to.
    void pairTargets(const MetadataSet& before, const MetadataSet& after) {
        for (const auto& [label, element] : after.made()) {
            const Element* const old = before.find(label);
            if (old == nullptr) {
                continue;
            }
            const Sets targets = freeTargets(after_, *element);
            if (targets.empty()) {
                continue;
            }
            const Sets oldTargets = freeTargets(before_, *old);
            pairAlike(oldTargets, targets);
            pairRest(oldTargets, targets);
        }
    }

    Sets freeTargets(const PartitionMetadata& metadata, const Element& element) const {
        References references;
        element.accept(references);
        Sets targets;
        for (const auto* const reference : references.strong) {
            const auto found = metadata.resolve(*reference);
            if (!found.empty() && isFree(found.front())) {
                targets.push_back(&found.front());
            }
        }
        return targets;
    }

    void pairAlike(const Sets& before, const Sets& after) {
        pairBy(before, after, [this](const MetadataSet& set) -> const std::string& {
            const auto [saying, isNew] = sayings_.try_emplace(&set);
            if (isNew) {
                saying->second = say(set);
            }
            return saying->second;
        });
    }

    void pairRest(const Sets& before, const Sets& after) { pairBy(before, after, classOf); }

    /// Matches sets that are alike in something, in their order.
    template <class What> void pairBy(const Sets& before, const Sets& after, What what) {
        std::map<std::string, Sets> free;
        for (auto set = before.rbegin(); set != before.rend(); ++set) {
            if (isFree(**set)) {
                free[what(**set)].push_back(*set);
            }
        }
        for (const MetadataSet* const set : after) {
            const auto found = isFree(*set) ? free.find(what(*set)) : free.end();
            // A list may name a set twice.
            while (found != free.end() && !found->second.empty()) {
                const MetadataSet* const next = found->second.back();
                found->second.pop_back();
                if (isFree(*next)) {
                    pair(*next, *set);
                    break;
                }
            }
        }
    }

    static std::string classOf(const MetadataSet& set) {
        const auto key = set.key().forMatching();
        return {key.begin(), key.end()};
    }

    /// The class and all values but for references and the set's own identifiers.
    static std::string say(const MetadataSet& set) {
        std::string saying = classOf(set);
        for (const auto& [label, element] : set.made()) {
            References references;
            element->accept(references);
            if (element->isSkipped() || references.isReference ||
                Metadata::Structural::identifies(label)) {
                continue;
            }
            const auto matched = label.withoutVersion();
            const std::string bytes = bytesOf(*element);
            saying.append(matched.begin(), matched.end());
            saying += std::to_string(bytes.size()) + ':' + bytes;
        }
        return saying;
    }

    /// An InstanceUID that a set has already goes to no other.
    Renaming namesOfPairs() const {
        Renaming names;
        for (const auto& [before, after] : pairs_) {
            if (before->hasInstanceUID() && after->hasInstanceUID() &&
                !(before->instanceUID() == after->instanceUID()) &&
                after_.resolve(before->instanceUID()).empty()) {
                names.add(after->instanceUID(), before->instanceUID());
            }
        }
        return names;
    }

    const PartitionMetadata& before_;
    const PartitionMetadata& after_;
    std::unordered_map<const MetadataSet*, const MetadataSet*> matched_; ///< both ways
    std::vector<std::pair<const MetadataSet*, const MetadataSet*>> pairs_;
    std::size_t done_ = 0; ///< pairs whose targets are matched
    std::unordered_map<const MetadataSet*, std::string> sayings_; ///< made on demand
};

} // namespace

std::size_t matchSets(const PartitionMetadata& before, PartitionMetadata& after) {
    const Renaming names = Matcher(before, after).match();
    if (names.size() != 0) {
        renameSets(after, names);
    }
    return names.size();
}

} // namespace Corvid::Editing
