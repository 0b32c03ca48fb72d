#include "host/base/IdentifierText.h"

#include "host/base/Exceptions.h"

#include <algorithm>
#include <string>

namespace Corvid::Types {

namespace {

constexpr char digits[] = "0123456789abcdef";

/// The value of a hexadecimal digit, or 16 where the unit is none.
constexpr unsigned digitValue(Utf16Unit unit) {
    if (unit >= '0' && unit <= '9') {
        return unit - '0';
    }
    const unsigned lower = unit | 0x20U;
    return unit < 0x80 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

[[noreturn]] void refuse(const Utf16Unit* text, std::size_t size) {
    constexpr std::size_t quoted = 200;
    const std::size_t length = Templates::char_traits<Utf16Unit>::length(text);
    throw Exceptions::InvalidFormat(
        "identifier '" + Platform::toUtf8(text, std::min(length, quoted)) +
            (length > quoted ? "...': " : "': ") + "expected " + std::to_string(size) +
            " bytes as pairs of hexadecimal digits joined by full stops",
        CORVID_HERE);
}

} // namespace

Utf16Text toDottedHexadecimal(const unsigned char* bytes, std::size_t size) {
    Utf16Text text;
    if (size == 0) {
        return text;
    }
    text.resize(size * 3 - 1, '.');
    Utf16Unit* to = text.data();
    for (std::size_t i = 0; i != size; ++i, to += 3) {
        to[0] = static_cast<Utf16Unit>(digits[bytes[i] >> 4]);
        to[1] = static_cast<Utf16Unit>(digits[bytes[i] & 15]);
    }
    return text;
}

void fromDottedHexadecimal(const Utf16Unit* text, unsigned char* bytes, std::size_t size) {
    const Utf16Unit* next = text;
    for (std::size_t i = 0; i != size; ++i) {
        if (i != 0 && *next++ != '.') {
            refuse(text, size);
        }
        const unsigned high = digitValue(*next);
        const unsigned low = high == 16 ? 16 : digitValue(next[1]);
        if (low == 16) {
            refuse(text, size);
        }
        bytes[i] = static_cast<unsigned char>(high << 4 | low);
        next += 2;
    }
    if (*next != 0) {
        refuse(text, size);
    }
}

} // namespace Corvid::Types
