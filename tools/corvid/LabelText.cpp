#include "tools/corvid/LabelText.h"

#include <array>

namespace Corvid::Tool {

namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool removeFront(std::string_view& text, std::string_view front) {
    if (text.size() < front.size()) {
        return false;
    }
    for (std::size_t i = 0; i != front.size(); ++i) {
        if (lower(text[i]) != front[i]) {
            return false;
        }
    }
    text.remove_prefix(front.size());
    return true;
}

int digit(char c) {
    c = lower(c);
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// Bytes of pairs of digits, between which separators may stand; exactly so many.
template <std::size_t Size>
std::optional<std::array<Types::u8, Size>> bytesOf(std::string_view text,
                                                   std::string_view separators) {
    std::array<Types::u8, Size> bytes{};
    std::size_t count = 0;
    removeFront(text, "0x");
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (separators.find(text[i]) != std::string_view::npos) {
            continue;
        }
        const int high = digit(text[i]);
        const int low = i + 1 < text.size() ? digit(text[i + 1]) : -1;
        if (high < 0 || low < 0 || count == Size) {
            return std::nullopt;
        }
        bytes[count++] = static_cast<Types::u8>(high << 4 | low);
        ++i;
    }
    return count == Size ? std::optional(bytes) : std::nullopt;
}

} // namespace

std::optional<Types::UniversalLabel> parseLabel(std::string_view text) {
    removeFront(text, "urn:smpte:ul:");
    const auto bytes = bytesOf<16>(text, ".-: ");
    return bytes ? std::make_optional<Types::UniversalLabel>(*bytes) : std::nullopt;
}

std::optional<Types::u16> parseLocalTag(std::string_view text) {
    const auto bytes = bytesOf<2>(text, ".");
    return bytes ? std::make_optional<Types::u16>((*bytes)[0] << 8 | (*bytes)[1]) : std::nullopt;
}

} // namespace Corvid::Tool
