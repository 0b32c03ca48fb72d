#include "tools/corvid/terminal/Printable.h"

#include "host/base/Hex.h"
#include "host/base/Unseen.h"
#include "host/base/Utf8.h"

namespace Corvid::Tool {

namespace {

using Platform::isControl;
using Platform::isUnseen;

/// @param digits  how many, hexadecimal.
std::string escaped(char kind, char32_t value, unsigned digits) {
    std::string text = {'\\', kind};
    while (digits-- != 0) {
        text += Hex::lower[(value >> (4 * digits)) & 15];
    }
    return text;
}

/// Puts what `escape` makes of them in the place of characters that are not fit for a terminal.
/// @param escape  gets the character, or a byte that is not UTF-8, and whether it is a byte.
template <class Escape> std::string withEscapes(std::string_view text, const Escape& escape) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [point, length] = Platform::firstCharacter(text);
        if (length == 0) {
            result += escape(static_cast<unsigned char>(text.front()), true);
        } else if (isControl(point) || isUnseen(point)) {
            result += escape(point, false);
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

} // namespace

std::string printable(std::string_view text) {
    return withEscapes(text, [](char32_t point, bool isByte) {
        return isByte || isControl(point) ? escaped('x', point, 2)
               : point < 0x10000          ? escaped('u', point, 4)
                                          : escaped('U', point, 8);
    });
}

std::string printableJson(std::string_view json) {
    return withEscapes(json, [](char32_t point, bool isByte) {
        if (isByte) {
            return escaped('u', 0xFFFD, 4);
        }
        if (point == '\n') {
            return std::string("\n");
        }
        if (point < 0x10000) {
            return escaped('u', point, 4);
        }
        point -= 0x10000;
        return escaped('u', 0xD800 | (point >> 10), 4) + escaped('u', 0xDC00 | (point & 0x3FF), 4);
    });
}

} // namespace Corvid::Tool
