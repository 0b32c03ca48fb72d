#include "XMLBuilder/format/HexBytes.h"

#include "XMLBuilder/Errors.h"
#include "host/base/Exceptions.h"

#include <algorithm>
#include <string_view>

namespace Corvid::XMLBuilder {

namespace {

constexpr unsigned digitValue(char16_t unit) noexcept {
    return unit <= u'9' ? unit - u'0' : (unit & 0x0FU) + 9;
}

} // namespace

FieldBytes decodeHex(const char16_t* text) {
    const std::u16string_view digits = text;
    FieldBytes bytes(digits.size() / 2);
    for (std::size_t i = 0; i != bytes.size(); ++i) {
        bytes[i] = static_cast<u8>(digitValue(digits[2 * i]) << 4 | digitValue(digits[2 * i + 1]));
    }
    return bytes;
}

FieldBytes parseHexBytes(const char16_t* text) {
    const std::u16string_view digits = text;
    if (digits.size() % 2 != 0) {
        throw Exceptions::InvalidFormat("Value has invalid Length", CORVID_ELEMENT_VISITOR_HERE);
    }
    if (!std::all_of(digits.begin(), digits.end(), isHexDigit)) {
        throw Exceptions::InvalidFormat("Value contains non Hexadecimal characters",
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    return decodeHex(text);
}

} // namespace Corvid::XMLBuilder
