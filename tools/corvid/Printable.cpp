#include "tools/corvid/Printable.h"

namespace Corvid::Tool {

namespace {

constexpr char digits[] = "0123456789abcdef";

std::string escaped(unsigned char code) {
    return {'\\', 'x', digits[code >> 4], digits[code & 15]};
}

/// U+2028 and U+2029 end a line, U+202A to U+202E and U+2066 to U+2069 turn the direction of what
/// follows: E2 80 A8 to E2 80 AE and E2 81 A6 to E2 81 A9 in UTF-8.
bool changesLayout(std::string_view rest) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    return rest.size() >= 3 && byte(0) == 0xE2 &&
           ((byte(1) == 0x80 && byte(2) >= 0xA8 && byte(2) <= 0xAE) ||
            (byte(1) == 0x81 && byte(2) >= 0xA6 && byte(2) <= 0xA9));
}

} // namespace

std::string printable(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // U+0080 to U+009F are control characters too: C2 80 to C2 9F in UTF-8.
        const bool longControl =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (longControl) {
            line += escaped(static_cast<unsigned char>(text[++i]));
        } else if (changesLayout(text.substr(i))) {
            const auto bits = [&](std::size_t at, unsigned mask) {
                return static_cast<unsigned char>(text[at]) & mask;
            };
            const unsigned low = bits(i + 1, 1) << 6 | bits(i + 2, 0x3F);
            line += {'\\', 'u', '2', '0', digits[low >> 4], digits[low & 15]};
            i += 2;
        } else if (byte < 0x20 || byte == 0x7F) {
            line += escaped(byte);
        } else {
            line += text[i];
        }
    }
    return line;
}

} // namespace Corvid::Tool
