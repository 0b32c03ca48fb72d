#include "host/xmlutils/InvalidCharacters.h"

#include "host/base/Exceptions.h"

namespace Corvid::XMLUtils {

std::string InvalidCharacter::describe() const {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text = Platform::toUtf8(path) + ": code unit U+";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += digits[unit >> shift & 0xF];
    }
    return text + " at position " + std::to_string(position) + " of its text";
}

void InvalidCharacter::refuse() const {
    throw Exceptions::InvalidFormat(
        describe() + " found, expected characters that XML 1.0 can hold", CORVID_HERE);
}

} // namespace Corvid::XMLUtils
