#include "host/xmlutils/scan/TextPlace.h"

#include <cstdint>
#include <cstring>

namespace Corvid::XMLUtils {

namespace {

/// Whether four code units are all beyond those that end lines.
bool endNoLine(const char16_t* four) {
    constexpr std::uint64_t one = 0x0001000100010001U;
    std::uint64_t high = 0;
    std::memcpy(&high, four, sizeof high);
    high &= 0xFFF0U * one;
    return ((high - one) & ~high & 0x8000U * one) == 0; // none is zero
}

} // namespace

void TextPlace::pass(std::u16string_view text) {
    std::size_t lineBegin = 0;
    for (std::size_t i = 0; i != text.size(); ++i) {
        while (text.size() - i > 4 && endNoLine(text.data() + i)) {
            i += 4;
        }
        if (text[i] != '\r' && text[i] != '\n') {
            continue;
        }
        const bool afterReturn = i == 0 ? afterReturn_ : text[i - 1] == '\r';
        line_ += text[i] == '\r' || !afterReturn ? 1 : 0;
        column_ = 1;
        lineBegin = i + 1;
    }
    column_ += text.size() - lineBegin;
    afterReturn_ = text.empty() ? afterReturn_ : text.back() == '\r';
}

} // namespace Corvid::XMLUtils
