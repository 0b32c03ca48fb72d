#include "host/types/IdentifierBytes.h"

#include "host/base/Exceptions.h"

#include <algorithm>
#include <string>

namespace Corvid::Types {

namespace {

constexpr char digits[] = "0123456789abcdef";

/// The value of a hexadecimal digit, or 16 where the unit is none.
constexpr unsigned digitValue(u16 unit) {
    if (unit >= '0' && unit <= '9') {
        return unit - '0';
    }
    const unsigned lower = unit | 0x20U;
    return unit < 0x80 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

[[noreturn]] void refuse(const u16* text, std::size_t size) {
    constexpr std::size_t quoted = 200;
    const std::size_t length = Templates::char_traits<u16>::length(text);
    throw Exceptions::InvalidFormat("identifier '" + Platform::toUtf8(text, std::min(length, quoted)) +
                                        (length > quoted ? "...': " : "': ") + "expected " +
                                        std::to_string(size) +
                                        " bytes as pairs of hexadecimal digits joined by full stops",
                                    CORVID_HERE);
}

} // namespace

Utf16Text toDottedHexadecimal(const u8* bytes, std::size_t size) {
    Utf16Text text;
    if (size == 0) {
        return text;
    }
    text.resize(size * 3 - 1, '.');
    u16* to = text.data();
    for (std::size_t i = 0; i != size; ++i, to += 3) {
        to[0] = static_cast<u16>(digits[bytes[i] >> 4]);
        to[1] = static_cast<u16>(digits[bytes[i] & 15]);
    }
    return text;
}

void fromDottedHexadecimal(const u16* text, u8* bytes, std::size_t size) {
    const u16* next = text;
    for (std::size_t i = 0; i != size; ++i) {
        if (i != 0 && *next++ != '.') {
            refuse(text, size);
        }
        const unsigned high = digitValue(*next);
        const unsigned low = high == 16 ? 16 : digitValue(next[1]);
        if (low == 16) {
            refuse(text, size);
        }
        bytes[i] = static_cast<u8>(high << 4 | low);
        next += 2;
    }
    if (*next != 0) {
        refuse(text, size);
    }
}

} // namespace Corvid::Types
