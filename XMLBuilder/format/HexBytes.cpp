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
    if (text.size() != 3 * bytes.size() - 1 ||
        !Hex::decodeDotted(text.data(), bytes.data(), bytes.size())) {
        return std::nullopt;
    }
    return Types::UUID(bytes);
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
