#include "XMLBuilder/format/HexBytes.h"

#include "XMLBuilder/Errors.h"
#include "host/base/Exceptions.h"

#include <string>
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
