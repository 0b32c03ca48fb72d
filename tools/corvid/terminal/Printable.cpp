#include "tools/corvid/terminal/Printable.h"

#include "host/base/Hex.h"
#include "host/base/Utf8.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace Corvid::Tool {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// What Unicode calls default ignorable, all that turns the direction of text among it, but for the
/// variation selectors, which symbols need; and the ends of lines and paragraphs, and the marks of
/// interlinear annotation. In ascending order.
constexpr Range unseen[] = {
    {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},   {0x115F, 0x1160},
    {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F},   {0x3164, 0x3164},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB},   {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE00FF},
    {0xE01F0, 0xE0FFF},
};

bool isUnseen(char32_t point) {
    const auto* const range =
        std::lower_bound(std::begin(unseen), std::end(unseen), point,
                         [](const Range& each, char32_t wanted) { return each.last < wanted; });
    return range != std::end(unseen) && range->first <= point;
}

bool isControl(char32_t point) { return point < 0x20 || (point >= 0x7F && point < 0xA0); }

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
