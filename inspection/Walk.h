#pragma once

#include "inspection/SetValues.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace Corvid::Inspection {

/// Goes from set to set, to each once: sets may share others, also in circles, and a report that
/// repeated them could be far longer than the file.
class Walk {
public:
    using Sets = std::vector<const Metadata::MetadataSet*>;
    using Property = Structural::Property<Types::StrongReference>;

    explicit Walk(const Metadata::PartitionMetadata& metadata) : metadata_(metadata) {}

    const Metadata::PartitionMetadata& metadata() const noexcept { return metadata_; }

    /// The sets that a property refers to and that have not been met before.
    Sets next(const Metadata::MetadataSet& set, const Property& property) {
        return unmet(targets(metadata_, set, property));
    }
    /// The same for all properties of a set.
    Sets next(const Metadata::MetadataSet& set) { return unmet(allTargets(metadata_, set)); }

    /// The first set that a property refers to, or null; met before or not. Looked for once:
    /// references that lead nowhere may be many, and many sets may share the one that has them.
    const Metadata::MetadataSet* first(const Metadata::MetadataSet& set, const Property& property) {
        const auto [entry, isNew] = firsts_.try_emplace({&set, property.item});
        if (isNew) {
            entry->second = firstTarget(metadata_, set, property);
        }
        return entry->second;
    }

private:
    Sets unmet(Sets sets) {
        sets.erase(std::remove_if(sets.begin(), sets.end(),
                                  [this](const auto* each) { return !met_.insert(each).second; }),
                   sets.end());
        return sets;
    }

    const Metadata::PartitionMetadata& metadata_;
    std::unordered_set<const Metadata::MetadataSet*> met_;
    std::map<std::pair<const Metadata::MetadataSet*, Types::u64>, const Metadata::MetadataSet*>
        firsts_;
};

} // namespace Corvid::Inspection
