#pragma once

#include <string_view>

namespace Corvid::XMLUtils {

/// Whether a text holds nothing but what XML 1.0 counts as white space, or nothing at all.
inline bool isWhiteSpace(std::u16string_view text) noexcept {
    return text.find_first_not_of(u" \t\r\n") == std::u16string_view::npos;
}

} // namespace Corvid::XMLUtils
