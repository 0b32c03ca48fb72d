#include "inspection/LabelText.h"

#include "host/base/Hex.h"

#include <array>

namespace Corvid::Inspection {

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

/// Bytes of pairs of digits, between which separators are allowed; exactly so many.
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
        if (i + 1 == text.size() || count == Size ||
            !Hex::decode(text.data() + i, &bytes[count], 1)) {
            return std::nullopt;
        }
        ++count;
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

} // namespace Corvid::Inspection
