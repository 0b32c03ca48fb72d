#pragma once

#include <cstdint>
#include <string_view>

namespace Corvid::XMLBuilder {

/// A name with a number that unequal names seldom share: it is quick to find among many. The number
/// needs no secret, because names of one number are compared one after the other, and each search
/// looks at a name once.
struct HashedName {
    /// @param name  zero-terminated; borrowed.
    explicit constexpr HashedName(const char16_t* name) noexcept : text(name), hash(of(name)) {}

    /// FNV-1a.
    static constexpr std::uint32_t of(std::u16string_view text) noexcept {
        std::uint32_t hash = 2166136261U;
        for (const char16_t unit : text) {
            hash = (hash ^ unit) * 16777619U;
        }
        return hash;
    }

    const char16_t* text;
    std::uint32_t hash;
};

} // namespace Corvid::XMLBuilder
