#include "host/xmlutils/scan/TableLoad.h"

#include <algorithm>

namespace Corvid::XMLUtils {

std::size_t TableLoad::add(std::uint64_t hash) {
    if (growth_.factor != 0 && hashes_.size() >= counts_.size() * growth_.load / 4) {
        grow();
    }
    hashes_.push_back(hash);
    const std::size_t count = ++counts_[hash % counts_.size()];
    return count > mostInABucket() ? count : 0;
}

void TableLoad::clear() {
    if (!hashes_.empty()) {
        hashes_.clear();
        std::fill(counts_.begin(), counts_.end(), 0);
    }
}

void TableLoad::grow() {
    counts_.assign(counts_.size() * growth_.factor + 1, 0);
    for (const std::uint64_t hash : hashes_) {
        ++counts_[hash % counts_.size()];
    }
}

} // namespace Corvid::XMLUtils
