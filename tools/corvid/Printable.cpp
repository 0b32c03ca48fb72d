#include "tools/corvid/Printable.h"

namespace Corvid::Tool {

namespace {

std::string escaped(unsigned char code) {
    constexpr char digits[] = "0123456789abcdef";
    return {'\\', 'x', digits[code >> 4], digits[code & 15]};
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
        } else if (byte < 0x20 || byte == 0x7F) {
            line += escaped(byte);
        } else {
            line += text[i];
        }
    }
    return line;
}

} // namespace Corvid::Tool
