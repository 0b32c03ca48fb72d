#include "host/metadata/ReferenceIndex.h"

#include <numeric>

namespace Corvid::Metadata {

ReferenceIndex::ReferenceIndex(const Sets& sets) {
    using Numbers = Types::UuidNumbers;
    identifiers_.reserve(sets.size());
    std::vector<Numbers::Number> numbers(sets.size(), Numbers::none);
    begins_.assign(sets.size() + 1, 0);
    for (std::size_t i = 0; i != sets.size(); ++i) {
        if (sets[i]->hasInstanceUID()) {
            numbers[i] = identifiers_.add(sets[i]->instanceUID()).first;
            ++begins_[numbers[i] + 1];
        }
    }
    std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
    sets_.resize(begins_.back());
    std::vector<std::size_t> next = begins_;
    for (std::size_t i = 0; i != sets.size(); ++i) {
        if (numbers[i] != Numbers::none) {
            sets_[next[numbers[i]]++] = sets[i];
        }
    }
}

Targets ReferenceIndex::find(const Types::UUID& uuid) const {
    const auto number = identifiers_.find(uuid);
    if (number == Types::UuidNumbers::none) {
        return {};
    }
    const std::size_t first = begins_[number];
    return {sets_.data() + first, begins_[number + 1] - first};
}

} // namespace Corvid::Metadata
