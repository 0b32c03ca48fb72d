#pragma once

#include "XMLBuilder/format/CompoundFields.h"
#include "host/base/Hex.h"
#include "host/types/IdentifierTypes.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace Corvid::XMLBuilder {

/// An identifier in dotted hexadecimal, zero-terminated.
template <std::size_t Size> class DottedText {
public:
    explicit DottedText(const Types::IdentifierBytes<Size>& identifier) noexcept {
        Hex::encodeDotted(identifier.bytes().data(), Size, text_, Hex::lower);
        text_[length] = 0;
    }

    operator std::u16string_view() const noexcept { return {text_, length}; }

private:
    static constexpr std::size_t length = 3 * Size - 1;

    char16_t text_[length + 1];
};

/// True for a digit of either case.
constexpr bool isHexDigit(char16_t unit) noexcept { return Hex::valueOf(unit) != Hex::none; }

/// Whether a text is pairs of hexadecimal digits; so is an empty one.
bool isHex(std::u16string_view text) noexcept;

/// Whether a text is so many pairs of hexadecimal digits with full stops between them, and not
/// empty.
bool isDottedHex(std::u16string_view text, std::size_t bytes) noexcept;

/// The identifier that a text is in dotted hexadecimal, or nothing.
std::optional<Types::UUID> parseUuid(std::u16string_view text) noexcept;

/// The bytes of pairs of hexadecimal digits.
/// @param text  of even length, digits only; zero-terminated.
FieldBytes decodeHex(const char16_t* text);

/// The same for the text of a value, which is checked as a whole before.
/// @throws InvalidFormat  it has an odd length or holds anything but hexadecimal digits.
FieldBytes parseHexBytes(const char16_t* text);

} // namespace Corvid::XMLBuilder
