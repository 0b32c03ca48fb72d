#pragma once

#include <cstddef>
#include <string>

namespace Corvid::XMLBuilder {

/// Bytes as text: two upper-case hexadecimal digits for each, nothing between them.
inline std::u16string toHexText(const unsigned char* bytes, std::size_t size) {
    static constexpr char16_t digits[] = u"0123456789ABCDEF";
    std::u16string text(2 * size, u'0');
    for (std::size_t i = 0; i != size; ++i) {
        text[2 * i] = digits[bytes[i] >> 4];
        text[2 * i + 1] = digits[bytes[i] & 15];
    }
    return text;
}

} // namespace Corvid::XMLBuilder
