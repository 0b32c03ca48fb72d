#include "XMLBuilder/format/IntegerRange.h"

namespace Corvid::XMLBuilder {

bool IntegerRange::holds(std::u16string_view text) const noexcept {
    const bool isNegative = !text.empty() && text.front() == u'-';
    if (isNegative || (!text.empty() && text.front() == u'+')) {
        text.remove_prefix(1);
    }
    const std::uint64_t farthest = isNegative ? least : greatest;
    std::uint64_t magnitude = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9') {
            return false;
        }
        const auto digit = static_cast<std::uint64_t>(unit - u'0');
        if (digit > farthest || magnitude > (farthest - digit) / 10) {
            return false;
        }
        magnitude = magnitude * 10 + digit;
    }
    return !text.empty();
}

std::string IntegerRange::describe() const {
    return "a whole number from " + (least == 0 ? "0" : "-" + std::to_string(least)) + " to " +
           std::to_string(greatest);
}

} // namespace Corvid::XMLBuilder
