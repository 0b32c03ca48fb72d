#include "host/xmlutils/scan/AttributeValue.h"

#include "host/base/Hex.h"

#include <cstdint>
#include <utility>

namespace Corvid::XMLUtils {

namespace {

using View = std::u16string_view;

constexpr std::uint32_t mostInText = 0x10FFFF;

/// The character of a reference such as `#38` or `#x26`, 0 if it is none.
std::uint32_t characterOf(View number) {
    const bool isHexadecimal = number.substr(0, 2) == u"#x";
    const unsigned base = isHexadecimal ? 16 : 10;
    std::uint32_t character = 0;
    for (const char16_t unit : number.substr(isHexadecimal ? 2 : 1)) {
        const unsigned digit = Hex::valueOf(unit);
        if (digit >= base || character > mostInText) {
            return 0;
        }
        character = character * base + digit;
    }
    return character <= mostInText ? character : 0;
}

std::uint32_t resolved(View reference) {
    constexpr std::pair<View, char16_t> predefined[] = {
        {u"lt", u'<'}, {u"gt", u'>'}, {u"amp", u'&'}, {u"quot", u'"'}, {u"apos", u'\''}};
    for (const auto& [name, character] : predefined) {
        if (reference == name) {
            return character;
        }
    }
    return reference.substr(0, 1) == u"#" ? characterOf(reference) : 0;
}

void append(std::u16string& to, std::uint32_t character) {
    if (character > 0xFFFF) {
        character -= 0x10000;
        to += static_cast<char16_t>(0xD800 + (character >> 10U));
        character = 0xDC00 + (character & 0x3FFU);
    }
    to += static_cast<char16_t>(character);
}

} // namespace

bool declaresNamespace(View attribute) {
    constexpr View xmlns = u"xmlns";
    return attribute.substr(0, xmlns.size()) == xmlns &&
           (attribute.size() == xmlns.size() || attribute[xmlns.size()] == ':');
}

std::u16string attributeValue(View written) {
    std::u16string value;
    value.reserve(written.size());
    for (std::size_t i = 0; i != written.size(); ++i) {
        const char16_t unit = written[i];
        const View rest = written.substr(i + 1);
        if (unit == '&') {
            // No reference reaches beyond the next `&`, so that each unit is sought through once.
            const std::size_t length = rest.find_first_of(u"&;");
            const bool isReference = length != View::npos && rest[length] == ';';
            const std::uint32_t character = isReference ? resolved(rest.substr(0, length)) : 0;
            if (character != 0) {
                append(value, character);
                i += length + 1;
                continue;
            }
        }
        if (unit == '\r' && !rest.empty() && rest.front() == '\n') {
            ++i;
        }
        const bool isBlank = unit == '\t' || unit == '\n' || unit == '\r';
        value += isBlank ? u' ' : unit;
    }
    return value;
}

} // namespace Corvid::XMLUtils
