#include "fuzz/xml/Encoding.h"

#include <string_view>

namespace Corvid::Fuzzing {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

bool isHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

std::uint8_t byteAt(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

std::uint32_t unitAt(std::string_view bytes, std::size_t index, bool isBigEndian) {
    return static_cast<std::uint32_t>(byteAt(bytes, index + (isBigEndian ? 0 : 1)) << 8 |
                                      byteAt(bytes, index + (isBigEndian ? 1 : 0)));
}

std::string fromUtf16(std::string_view bytes, bool isBigEndian) {
    std::string text;
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
        std::uint32_t unit = unitAt(bytes, i, isBigEndian);
        if (isHighSurrogate(unit) && i + 4 <= bytes.size()) {
            if (const auto low = unitAt(bytes, i + 2, isBigEndian); isLowSurrogate(low)) {
                unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        text += utf8Of(unit);
    }
    return text;
}

/// Takes a code point away from the front; the byte itself where there is none in UTF-8.
std::uint32_t takeCodePoint(std::string_view& rest) {
    const std::uint32_t first = byteAt(rest, 0);
    const std::size_t more = first >= 0xF0 && first < 0xF5 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first >= 0xC2 && first < 0xF5 && rest.size() > more) {
        std::uint32_t codePoint = first & (0x3FU >> more);
        bool isWhole = true;
        for (std::size_t i = 1; i <= more; ++i) {
            isWhole = isWhole && (byteAt(rest, i) & 0xC0U) == 0x80;
            codePoint = codePoint << 6 | (byteAt(rest, i) & 0x3FU);
        }
        if (isWhole && codePoint <= 0x10FFFF) {
            rest.remove_prefix(more + 1);
            return codePoint;
        }
    }
    rest.remove_prefix(1);
    return first;
}

std::string toUtf16(std::string_view text, bool isBigEndian) {
    std::string bytes;
    const auto add = [&](std::uint32_t unit) {
        bytes += static_cast<char>(isBigEndian ? unit >> 8 : unit);
        bytes += static_cast<char>(isBigEndian ? unit : unit >> 8);
    };
    while (!text.empty()) {
        const std::uint32_t codePoint = takeCodePoint(text);
        if (codePoint < 0x10000) {
            add(codePoint);
        } else {
            add(0xD800 + ((codePoint - 0x10000) >> 10));
            add(0xDC00 + (codePoint & 0x3FF));
        }
    }
    return bytes;
}

std::string toLatin1(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::uint32_t codePoint = takeCodePoint(text);
        bytes += codePoint < 0x100 ? std::string(1, static_cast<char>(codePoint))
                                   : "&#" + std::to_string(codePoint) + ";";
    }
    return bytes;
}

} // namespace

std::string utf8Of(std::uint32_t codePoint) {
    const auto last = [&](unsigned shift) {
        return static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    };
    if (codePoint < 0x80) {
        return {static_cast<char>(codePoint)};
    }
    if (codePoint < 0x800) {
        return {static_cast<char>(0xC0 | codePoint >> 6), last(0)};
    }
    if (codePoint < 0x10000) {
        return {static_cast<char>(0xE0 | codePoint >> 12), last(6), last(0)};
    }
    return {static_cast<char>(0xF0 | codePoint >> 18), last(12), last(6), last(0)};
}

DecodedText decode(const std::uint8_t* bytes, std::size_t size) {
    using namespace std::string_view_literals;
    const std::string_view all(reinterpret_cast<const char*>(bytes), size);
    const std::string_view front = all.substr(0, 2);
    if (front == "\xFE\xFF"sv) {
        return {Encoding::bigEndianWithMark, fromUtf16(all.substr(2), true)};
    }
    if (front == "\xFF\xFE"sv) {
        return {Encoding::littleEndianWithMark, fromUtf16(all.substr(2), false)};
    }
    if (front == "\0<"sv) {
        return {Encoding::bigEndian, fromUtf16(all, true)};
    }
    if (front == "<\0"sv) {
        return {Encoding::littleEndian, fromUtf16(all, false)};
    }
    if (all.substr(0, utf8Mark.size()) == utf8Mark) {
        return {Encoding::bytesWithMark, std::string(all.substr(utf8Mark.size()))};
    }
    return {Encoding::bytes, std::string(all)};
}

std::string encode(const DecodedText& decoded) {
    const std::string& text = decoded.text;
    switch (decoded.encoding) {
    case Encoding::bytes:
        return text;
    case Encoding::latin1:
        return toLatin1(text);
    case Encoding::bytesWithMark:
        return std::string(utf8Mark) + text;
    case Encoding::bigEndian:
        return toUtf16(text, true);
    case Encoding::bigEndianWithMark:
        return "\xFE\xFF" + toUtf16(text, true);
    case Encoding::littleEndian:
        return toUtf16(text, false);
    case Encoding::littleEndianWithMark:
        return "\xFF\xFE" + toUtf16(text, false);
    }
    return text;
}

} // namespace Corvid::Fuzzing
