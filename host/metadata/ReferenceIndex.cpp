#include "host/metadata/ReferenceIndex.h"

#include <algorithm>

namespace Corvid::Metadata {

ReferenceIndex::ReferenceIndex(const Sets& sets) {
    std::vector<std::pair<Identifier, MetadataSet*>> entries;
    entries.reserve(sets.size());
    for (MetadataSet* set : sets) {
        if (set->hasInstanceUID()) {
            entries.emplace_back(set->instanceUID().bytes(), set);
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    identifiers_.reserve(entries.size());
    sets_.reserve(entries.size());
    for (const auto& [identifier, set] : entries) {
        identifiers_.push_back(identifier);
        sets_.push_back(set);
    }
}

Targets ReferenceIndex::find(const Types::UUID& uuid) const {
    const auto [first, last] =
        std::equal_range(identifiers_.begin(), identifiers_.end(), uuid.bytes());
    return {sets_.data() + (first - identifiers_.begin()), static_cast<std::size_t>(last - first)};
}

} // namespace Corvid::Metadata
