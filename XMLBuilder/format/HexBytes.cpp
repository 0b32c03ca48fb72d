#include "XMLBuilder/format/HexBytes.h"

#include "XMLBuilder/Errors.h"
#include "host/base/Exceptions.h"

#include <string_view>

namespace Corvid::XMLBuilder {

FieldBytes decodeHex(const char16_t* text) {
    const std::u16string_view digits = text;
    FieldBytes bytes(digits.size() / 2);
    Hex::decode(digits.data(), bytes.data(), bytes.size());
    return bytes;
}

FieldBytes parseHexBytes(const char16_t* text) {
    const std::u16string_view digits = text;
    if (digits.size() % 2 != 0) {
        throw Exceptions::InvalidFormat("Value has invalid Length",
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    FieldBytes bytes(digits.size() / 2);
    if (!Hex::decode(digits.data(), bytes.data(), bytes.size())) {
        throw Exceptions::InvalidFormat("Value contains non Hexadecimal characters",
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    return bytes;
}

} // namespace Corvid::XMLBuilder
