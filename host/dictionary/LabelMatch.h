#pragma once

#include "host/types/FixedBytes.h"

#include <array>
#include <cstdint>

namespace Corvid::MetaMetadata {

/// What of a label or key takes part in matching: all but the version byte.
using LabelMatch = std::array<unsigned char, 16>;

/// In the order of the bytes. A dictionary is sorted at each start, and a call for each two labels
/// would be most of that.
struct LabelMatchLess {
    bool operator()(const LabelMatch& a, const LabelMatch& b) const noexcept {
        const auto first = half(a, 0);
        const auto second = half(b, 0);
        return first != second ? first < second : half(a, 8) < half(b, 8);
    }

private:
    static std::uint64_t half(const LabelMatch& label, std::size_t from) noexcept {
        return Types::readBigEndian<std::uint64_t>(label.data() + from);
    }
};

} // namespace Corvid::MetaMetadata
