#include "host/klv/Key.h"

#include <algorithm>
#include <iterator>

namespace Corvid::KLV {

namespace {

// The sixth byte of a local set's key says how the lengths of its properties are coded.
constexpr std::size_t codingByte = 5;
constexpr std::size_t versionByte = 7;
constexpr unsigned char lengthsOfTwoBytes = 0x53;
constexpr unsigned char berLengths = 0x13;

/// Compares the front of the part that is matched.
template <std::size_t Size>
bool startsWith(const Key& key, const unsigned char (&front)[Size]) noexcept {
    const auto bytes = key.forMatching();
    return std::equal(std::begin(front), std::end(front), bytes.begin());
}

} // namespace

Key::Key(const unsigned char* bytes) noexcept { std::copy_n(bytes, length, bytes_.begin()); }

Key::Key(const unsigned short* text, Types::StringRepresentationEncodingType) {
    Types::fromDottedHexadecimal(text, bytes_.data(), length);
}

Utf16Text Key::toString(Types::StringRepresentationEncodingType) const {
    return Types::toDottedHexadecimal(bytes_.data(), length);
}

std::array<unsigned char, Key::length> Key::forMatching() const noexcept {
    static constexpr unsigned char front[] = {0x06, 0x0e, 0x2b, 0x34, 0x02};
    auto result = bytes_;
    result[versionByte] = 0;
    if (result[codingByte] == berLengths && result[codingByte + 1] == 0x01 &&
        std::equal(std::begin(front), std::end(front), result.begin())) {
        result[codingByte] = lengthsOfTwoBytes;
    }
    return result;
}

bool isStructuralMetadataSet(const Key& key) noexcept {
    static constexpr unsigned char front[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01,
                                              0x00, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01};
    return startsWith(key, front);
}

bool isLocalSet(const Key& key) noexcept {
    static constexpr unsigned char front[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01};
    return startsWith(key, front);
}

bool hasBerLengths(const Key& key) noexcept {
    return key[codingByte] == berLengths && isLocalSet(key);
}

} // namespace Corvid::KLV
