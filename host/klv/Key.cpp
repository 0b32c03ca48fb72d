#include "host/klv/Key.h"

#include <algorithm>

namespace Corvid::KLV {

namespace {

/// Compares the front of a key, the version byte left out.
template <std::size_t Size>
bool startsWith(const Key& key, const unsigned char (&front)[Size]) noexcept {
    for (std::size_t i = 0; i != Size; ++i) {
        if (i != 7 && key[i] != front[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

Key::Key(const unsigned char* bytes) noexcept { std::copy_n(bytes, length, bytes_.begin()); }

Key::Key(const unsigned short* text, Types::StringRepresentationEncodingType) {
    Types::fromDottedHexadecimal(text, bytes_.data(), length);
}

Utf16Text Key::toString(Types::StringRepresentationEncodingType) const {
    return Types::toDottedHexadecimal(bytes_.data(), length);
}

bool isStructuralMetadataSet(const Key& key) noexcept {
    static constexpr unsigned char front[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01,
                                              0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01};
    return startsWith(key, front);
}

bool isLocalSet(const Key& key) noexcept {
    static constexpr unsigned char front[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01};
    return startsWith(key, front);
}

} // namespace Corvid::KLV
