#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

namespace Corvid::XMLBuilder {

/// White space as a stream in the classic locale skips it.
constexpr bool isStreamSpace(char16_t unit) noexcept {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

/// Where a stream begins to read a text.
inline const char16_t* skipStreamSpace(const char16_t* text) noexcept {
    while (isStreamSpace(*text)) {
        ++text;
    }
    return text;
}

/// Reads a decimal number as a stream in its default state and the classic locale does, without
/// building one: white space is skipped, a sign is taken, reading stops at the first character that
/// does not continue the number and ignores the rest.
///
/// More than the type can hold gives the nearest number that it can; an unsigned type takes a minus
/// sign and wraps; a text without number gives 0.
///
/// @param text  zero-terminated.
template <class Number> Number readNumber(const char16_t* text) noexcept {
    using Unsigned = std::make_unsigned_t<Number>;
    using Limits = std::numeric_limits<Number>;

    const char16_t* next = skipStreamSpace(text);
    const bool negative = *next == u'-';
    if (negative || *next == u'+') {
        ++next;
    }
    const bool belowZero = negative && std::is_signed_v<Number>;
    const auto greatest = static_cast<std::uint64_t>(Limits::max()) + (belowZero ? 1 : 0);
    std::uint64_t magnitude = 0;
    for (; *next >= u'0' && *next <= u'9'; ++next) {
        const auto digit = static_cast<std::uint64_t>(*next - u'0');
        if (magnitude > (greatest - digit) / 10) {
            return belowZero ? Limits::min() : Limits::max();
        }
        magnitude = magnitude * 10 + digit;
    }
    const auto bits = static_cast<Unsigned>(magnitude);
    return static_cast<Number>(negative ? Unsigned{0} - bits : bits);
}

} // namespace Corvid::XMLBuilder
