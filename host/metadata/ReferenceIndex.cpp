#include "host/metadata/ReferenceIndex.h"

namespace Corvid::Metadata {

namespace {

/// Marks a range whose first place is settled.
constexpr Types::u32 placed = 0x80000000U;

} // namespace

ReferenceIndex::ReferenceIndex(const Sets& sets) {
    std::vector<Range*> rangeOf;
    rangeOf.reserve(sets.size());
    ranges_.reserve(sets.size());
    std::size_t identified = 0;
    for (const MetadataSet* set : sets) {
        Range* range = nullptr;
        if (set->hasInstanceUID()) {
            range = &ranges_[set->instanceUID().bytes()];
            ++range->count;
            ++identified;
        }
        rangeOf.push_back(range);
    }
    grouped_.resize(identified);
    Types::u32 next = 0;
    for (std::size_t i = 0; i != sets.size(); ++i) {
        Range* range = rangeOf[i];
        if (range == nullptr) {
            continue;
        }
        // A range that has been placed counts up to its size again as its sets come in.
        if ((range->count & placed) == 0) {
            range->first = next;
            next += range->count;
            range->count = placed;
        }
        grouped_[range->first + (range->count++ & ~placed)] = sets[i];
    }
    for (auto& entry : ranges_) {
        entry.second.count &= ~placed;
    }
}

Targets ReferenceIndex::find(const Types::UUID& uuid) const {
    const auto range = ranges_.find(uuid.bytes());
    if (range == ranges_.end()) {
        return {};
    }
    return {grouped_.data() + range->second.first, range->second.count};
}

} // namespace Corvid::Metadata
