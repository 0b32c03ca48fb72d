#include "XMLBuilder/format/HexBytes.h"

#include "XMLBuilder/Errors.h"
#include "host/base/Exceptions.h"

#include <algorithm>
#include <array>
#include <string>

namespace Corvid::XMLBuilder {

bool isHex(std::u16string_view text) noexcept {
    return text.size() % 2 == 0 && std::all_of(text.begin(), text.end(), isHexDigit);
}

bool isDottedHex(std::u16string_view text, std::size_t bytes) noexcept {
    if (bytes == 0 || text.size() != 3 * bytes - 1) {
        return false;
    }
    const char16_t* at = text.data();
    for (std::size_t i = 0; i != bytes; ++i, at += 3) {
        if ((i != 0 && at[-1] != u'.') || !isHexDigit(at[0]) || !isHexDigit(at[1])) {
            return false;
        }
    }
    return true;
}

std::optional<Types::UUID> parseUuid(std::u16string_view text) noexcept {
    std::array<Types::u8, Types::UUID::fixedSize> bytes;
    if (text.size() != 3 * bytes.size() - 1) {
        return std::nullopt;
    }
    // Each set and each link has one: all of it is read before it is judged.
    unsigned wrong = 0;
    const char16_t* at = text.data();
    for (std::size_t i = 0; i != bytes.size(); ++i, at += 3) {
        const unsigned high = Hex::valueOf(at[0]), low = Hex::valueOf(at[1]);
        wrong |= ((high | low) & Hex::none) | (i == 0 ? 0U : unsigned{at[-1]} ^ u'.');
        bytes[i] = static_cast<Types::u8>(high << 4 | low);
    }
    return wrong == 0 ? std::optional(Types::UUID(bytes)) : std::nullopt;
}

FieldBytes decodeHex(const char16_t* text) {
    const std::u16string_view digits = text;
    FieldBytes bytes(digits.size() / 2);
    Hex::decode(digits.data(), bytes.data(), bytes.size());
    return bytes;
}

FieldBytes parseHexBytes(const char16_t* text) {
    const std::u16string_view digits = text;
    if (digits.size() % 2 != 0) {
        throw Exceptions::InvalidFormat(std::string("Value ") + CallerContract::Text::oddLength,
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    FieldBytes bytes(digits.size() / 2);
    if (!Hex::decode(digits.data(), bytes.data(), bytes.size())) {
        throw Exceptions::InvalidFormat(std::string("Value ") + CallerContract::Text::noDigits,
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    return bytes;
}

} // namespace Corvid::XMLBuilder
