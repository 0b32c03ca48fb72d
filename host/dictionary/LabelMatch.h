#pragma once

#include <array>
#include <cstring>

namespace Corvid::MetaMetadata {

/// What of a label or key takes part in matching: all but the version byte.
using LabelMatch = std::array<unsigned char, 16>;

struct LabelMatchLess {
    bool operator()(const LabelMatch& a, const LabelMatch& b) const noexcept {
        return std::memcmp(a.data(), b.data(), a.size()) < 0;
    }
};

} // namespace Corvid::MetaMetadata
