#include "host/base/IdentifierText.h"

#include "host/base/Exceptions.h"
#include "host/base/Hex.h"

#include <algorithm>
#include <string>

namespace Corvid::Types {

namespace {

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
    text.resize(size * 3 - 1);
    Hex::encodeDotted(bytes, size, text.data(), Hex::lower);
    return text;
}

void fromDottedHexadecimal(const Utf16Unit* text, unsigned char* bytes, std::size_t size) {
    const std::size_t length = size == 0 ? 0 : 3 * size - 1;
    if (!Hex::decodeDotted(text, bytes, size) || text[length] != 0) {
        refuse(text, size);
    }
}

} // namespace Corvid::Types
