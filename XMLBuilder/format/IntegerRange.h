#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

namespace Corvid::XMLBuilder {

/// The whole numbers between two.
struct IntegerRange {
    std::uint64_t least; ///< below zero by so much
    std::uint64_t greatest;

    /// Those that a type can hold.
    template <class Number> static constexpr IntegerRange of() {
        using Limits = std::numeric_limits<Number>;
        return {std::is_signed_v<Number> ? static_cast<std::uint64_t>(Limits::max()) + 1 : 0,
                static_cast<std::uint64_t>(Limits::max())};
    }

    /// Whether a text is one of them in XML Schema's lexical form.
    bool holds(std::u16string_view text) const noexcept;

    /// "a whole number from 0 to 255".
    std::string describe() const;
};

} // namespace Corvid::XMLBuilder
