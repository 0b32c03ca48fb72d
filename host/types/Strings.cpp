#include "host/types/Strings.h"

#include "host/types/FixedBytes.h"

#include <algorithm>

namespace Corvid::Types {

namespace {

Templates::vector<u8> bigEndianBytes(const u16* text) {
    Templates::vector<u8> bytes(2 * Templates::char_traits<u16>::length(text));
    for (std::size_t i = 0; i != bytes.size() / 2; ++i) {
        writeBigEndian(bytes.data() + 2 * i, text[i]);
    }
    return bytes;
}

/// Whether bytes that are not zero follow a terminator that is the first unit.
bool hidesBytes(ByteView bytes, std::size_t unitSize) noexcept {
    const u8* const end = bytes.data + bytes.size;
    const u8* const afterFirstUnit = bytes.data + std::min(unitSize, bytes.size);
    const auto isSet = [](u8 byte) { return byte != 0; };
    return std::none_of(bytes.data, afterFirstUnit, isSet) &&
           std::any_of(afterFirstUnit, end, isSet);
}

Utf16Text textUpToZero(ByteView bytes) {
    Utf16Text text;
    text.reserve(bytes.size / 2);
    for (std::size_t i = 0; i + 1 < bytes.size; i += 2) {
        const u16 unit = readBigEndian<u16>(bytes.data + i);
        if (unit == 0) {
            break;
        }
        text.push_back(unit);
    }
    return text;
}

} // namespace

bool UTF16String::fits(ByteView bytes) noexcept {
    return ByteRun::fits(bytes) && bytes.size % sizeof(u16) == 0 && !hidesBytes(bytes, sizeof(u16));
}

UTF16String::UTF16String(const u16* text) : Visitable(ByteView{}), text_(text) {
    bytes_ = bigEndianBytes(text);
}

UTF16String::UTF16String(ByteView bytes) : Visitable(bytes), text_(textUpToZero(bytes)) {}

bool ISO7String::fits(ByteView bytes) noexcept {
    return ByteRun::fits(bytes) && !hidesBytes(bytes, 1);
}

ISO7String::ISO7String(const char* text)
    : Visitable(ByteView{reinterpret_cast<const u8*>(text), std::char_traits<char>::length(text)}),
      text_(text) {}

ISO7String::ISO7String(ByteView bytes)
    : Visitable(bytes), text_(bytes.data, std::find(bytes.data, bytes.data + bytes.size, u8{0})) {}

} // namespace Corvid::Types
