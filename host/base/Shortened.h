#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvid {

/// Text for a message: as it is, or its front and "..." where it is longer.
/// @param text  UTF-8; it is cut between characters.
/// @param most  bytes of the text that stay.
inline std::string shortened(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return std::string(text);
    }
    std::size_t end = most;
    while (end != 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) {
        --end;
    }
    return std::string(text.substr(0, end)).append("...");
}

} // namespace Corvid
