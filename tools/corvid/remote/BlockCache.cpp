#include "tools/corvid/remote/BlockCache.h"

#include <algorithm>

namespace Corvid::Tool {

const BlockCache::Bytes* BlockCache::find(std::uint64_t block) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [block](const Entry& entry) { return entry.block == block; });
    if (found == entries_.end()) {
        return nullptr;
    }
    entries_.splice(entries_.begin(), entries_, found);
    return &found->bytes;
}

void BlockCache::add(std::uint64_t block, Bytes bytes) {
    entries_.push_front({block, std::move(bytes)});
    if (entries_.size() > most) {
        entries_.pop_back();
    }
}

} // namespace Corvid::Tool
