#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvid::Testing {

/// 7-bit text in code units of so many bytes.
inline std::string inUnits(std::string_view text, std::size_t size, bool highFirst) {
    std::string bytes;
    for (const char character : text) {
        std::string unit(size, '\0');
        unit[highFirst ? size - 1 : 0] = character;
        bytes += unit;
    }
    return bytes;
}

} // namespace Corvid::Testing
