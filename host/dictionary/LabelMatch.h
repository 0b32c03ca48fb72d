#pragma once

#include "host/types/FixedBytes.h"

#include <array>
#include <cstdint>

namespace Corvid::MetaMetadata {

/// Of a label or a key.
using LabelBytes = std::array<unsigned char, 16>;

/// The order of the bytes that take part in matching: all but the version, which is the last one of
/// the first half (SMPTE ST 298).
struct LabelMatchLess {
    bool operator()(const LabelBytes& a, const LabelBytes& b) const noexcept {
        const auto first = half(a, 0) | version;
        const auto second = half(b, 0) | version;
        return first != second ? first < second : half(a, 8) < half(b, 8);
    }

private:
    static constexpr std::uint64_t version = 0xFF;
    static std::uint64_t half(const LabelBytes& label, std::size_t from) noexcept {
        return Types::readBigEndian<std::uint64_t>(label.data() + from);
    }
};

} // namespace Corvid::MetaMetadata
