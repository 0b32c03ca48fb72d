#include "host/base/Text.h"

#include "host/base/Utf8.h"

namespace Corvid::Platform {

namespace {

constexpr char32_t replacement = 0xFFFD;

void appendUtf8(std::string& to, char32_t point) {
    const auto tail = [&to, point](int shift) {
        to.push_back(static_cast<char>(0x80 | ((point >> shift) & 0x3F)));
    };
    if (point < 0x80) {
        to.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        to.push_back(static_cast<char>(0xC0 | (point >> 6)));
        tail(0);
    } else if (point < 0x10000) {
        to.push_back(static_cast<char>(0xE0 | (point >> 12)));
        tail(6);
        tail(0);
    } else {
        to.push_back(static_cast<char>(0xF0 | (point >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

void appendUtf16(Utf16Text& to, char32_t point) {
    if (point < 0x10000) {
        to.push_back(static_cast<Utf16Unit>(point));
        return;
    }
    point -= 0x10000;
    to.push_back(static_cast<Utf16Unit>(0xD800 | (point >> 10)));
    to.push_back(static_cast<Utf16Unit>(0xDC00 | (point & 0x3FF)));
}

constexpr bool isLead(Utf16Unit unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isTrail(Utf16Unit unit) { return (unit & 0xFC00) == 0xDC00; }

} // namespace

Utf8Character firstCharacter(std::string_view text) noexcept {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return {replacement, 0};
    }
    char32_t point = first & (0xFF >> (length + 1));
    for (std::size_t i = 1; i != length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return {replacement, 0};
        }
        point = (point << 6) | (byte(i) & 0x3F);
    }
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = point >= 0xD800 && point < 0xE000;
    if (point < least[length] || point > 0x10FFFF || surrogate) {
        return {replacement, 0};
    }
    return {point, length};
}

Utf16Text widen(std::string_view text) {
    Utf16Text result;
    result.reserve(text.size());
    for (const char c : text) {
        result.push_back(static_cast<unsigned char>(c));
    }
    return result;
}

std::string toUtf8(const Utf16Unit* text, std::size_t length) {
    std::string result;
    result.reserve(length);
    for (std::size_t i = 0; i != length; ++i) {
        const Utf16Unit unit = text[i];
        if (isLead(unit) && i + 1 != length && isTrail(text[i + 1])) {
            const Utf16Unit next = text[++i];
            appendUtf8(result, 0x10000 + ((unit & 0x3FFU) << 10) + (next & 0x3FFU));
        } else {
            appendUtf8(result, isLead(unit) || isTrail(unit) ? replacement : unit);
        }
    }
    return result;
}

bool isDigits(std::string_view text) noexcept {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string toUtf8(const Utf16Unit* text) {
    return toUtf8(text, Templates::char_traits<Utf16Unit>::length(text));
}

std::string toUtf8(const Utf16Text& text) { return toUtf8(text.data(), text.size()); }

Utf16Text fromUtf8(std::string_view text) {
    Utf16Text result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [point, length] = firstCharacter(text);
        appendUtf16(result, point);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string wstringToString(const Utf16Text& text) {
    std::string result;
    result.reserve(text.size());
    for (const Utf16Unit unit : text) {
        result.push_back(unit < 0x100 ? static_cast<char>(unit) : '?');
    }
    return result;
}

} // namespace Corvid::Platform
