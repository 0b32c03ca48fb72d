#include "tools/corvid/remote/BlockCache.h"

namespace Corvid::Tool {

const BlockCache::Bytes* BlockCache::find(std::uint64_t block) {
    const auto found = places_.find(block);
    if (found == places_.end()) {
        return nullptr;
    }
    entries_.splice(entries_.begin(), entries_, found->second);
    return &found->second->bytes;
}

void BlockCache::add(std::uint64_t block, Bytes bytes) {
    entries_.push_front({block, std::move(bytes)});
    places_[block] = entries_.begin();
    if (entries_.size() > most) {
        places_.erase(entries_.back().block);
        entries_.pop_back();
    }
}

} // namespace Corvid::Tool
