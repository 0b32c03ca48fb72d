#include "host/xmlutils/InvalidCharacters.h"

#include "host/base/Exceptions.h"
#include "host/base/Hex.h"

namespace Corvid::XMLUtils {

std::string InvalidCharacter::describe() const {
    const unsigned char bytes[] = {static_cast<unsigned char>(unit >> 8),
                                   static_cast<unsigned char>(unit)};
    return Platform::toUtf8(path) + ": code unit U+" +
           Hex::encoded<std::string>(bytes, sizeof bytes, Hex::upper) + " at position " +
           std::to_string(position) + " of its text";
}

InvalidCharacters::~InvalidCharacters() = default;
RefuseInvalidCharacters::~RefuseInvalidCharacters() = default;
ReplaceInvalidCharacters::~ReplaceInvalidCharacters() = default;

void RefuseInvalidCharacters::found(const InvalidCharacter& character) {
    throw Exceptions::InvalidFormat(
        character.describe() + " found, expected characters that XML 1.0 can hold", CORVID_HERE);
}

void ReplaceInvalidCharacters::found(const InvalidCharacter& character) {
    ++count_;
    if (replaced_.size() < remembered_) {
        replaced_.push_back(character);
    }
}

} // namespace Corvid::XMLUtils
