#pragma once

#include "Corvid/Export.h"

#include <cstddef>
#include <string_view>

namespace Corvid::Platform {

/// A character of text in UTF-8.
struct Utf8Character {
    char32_t point;     ///< U+FFFD where the bytes are malformed
    std::size_t length; ///< in bytes, 1 to 4; 0 where they are malformed
};

/// The character at the front of a text. Overlong forms, surrogates and what is beyond U+10FFFF are
/// malformed (RFC 3629).
/// @param text  not empty.
CORVID_EXPORT Utf8Character firstCharacter(std::string_view text) noexcept;

} // namespace Corvid::Platform
