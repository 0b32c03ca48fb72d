#pragma once

#include <array>
#include <cstddef>

/// Bytes as pairs of hexadecimal digits. A byte is a char or an unsigned char, a unit of text any
/// character type.
namespace Corvid::Hex {

/// The digits in the order of their values.
inline constexpr char lower[] = "0123456789abcdef";
inline constexpr char upper[] = "0123456789ABCDEF";

/// The value of what is no digit.
inline constexpr unsigned none = 16;

/// The values of the characters of ASCII as digits, of either case.
inline constexpr auto values = [] {
    std::array<unsigned char, 128> table{};
    for (unsigned char& value : table) {
        value = none;
    }
    for (unsigned char value = 0; value != none; ++value) {
        table[static_cast<unsigned char>(lower[value])] = value;
        table[static_cast<unsigned char>(upper[value])] = value;
    }
    return table;
}();

/// The value of a digit, or none.
template <class Unit> constexpr unsigned valueOf(Unit unit) noexcept {
    const auto place = static_cast<std::size_t>(unit);
    return place < values.size() ? values[place] : none;
}

/// Writes two digits for each byte.
/// @param digits  lower or upper.
template <class Byte, class Unit>
void encode(const Byte* bytes, std::size_t size, Unit* to, const char* digits) noexcept {
    for (std::size_t i = 0; i != size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        to[2 * i] = static_cast<Unit>(digits[byte >> 4]);
        to[2 * i + 1] = static_cast<Unit>(digits[byte & 15]);
    }
}

/// The same with full stops between the pairs.
template <class Byte, class Unit>
void encodeDotted(const Byte* bytes, std::size_t size, Unit* to, const char* digits) noexcept {
    for (std::size_t i = 0; i != size; ++i) {
        if (i != 0) {
            *to++ = '.';
        }
        encode(bytes + i, 1, to, digits);
        to += 2;
    }
}

/// Writes two digits for each byte, as a text.
template <class Text, class Byte>
Text encoded(const Byte* bytes, std::size_t size, const char* digits) {
    Text text(2 * size, '0');
    encode(bytes, size, text.data(), digits);
    return text;
}

/// Reads two digits for each byte, and nothing after the first unit that is no digit.
/// @return false where a unit is no digit; some of the bytes may be written.
template <class Unit, class Byte>
bool decode(const Unit* text, Byte* bytes, std::size_t size) noexcept {
    for (std::size_t i = 0; i != size; ++i) {
        const unsigned high = valueOf(text[2 * i]);
        if (high == none) {
            return false;
        }
        const unsigned low = valueOf(text[2 * i + 1]);
        if (low == none) {
            return false;
        }
        bytes[i] = static_cast<Byte>(high << 4 | low);
    }
    return true;
}

/// The same of pairs with full stops between them.
template <class Unit, class Byte>
bool decodeDotted(const Unit* text, Byte* bytes, std::size_t size) noexcept {
    for (std::size_t i = 0; i != size; ++i) {
        if ((i != 0 && *text++ != '.') || !decode(text, bytes + i, 1)) {
            return false;
        }
        text += 2;
    }
    return true;
}

} // namespace Corvid::Hex
