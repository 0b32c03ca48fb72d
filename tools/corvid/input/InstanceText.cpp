#include "tools/corvid/input/InstanceText.h"

#include "host/base/Hex.h"

#include <algorithm>
#include <regex>

namespace Corvid::Tool {

std::optional<Types::UUID> parseInstanceUID(const std::string& text) {
    static const std::regex forms("([0-9a-f]{2}[.]){15}[0-9a-f]{2}|[0-9a-f]{32}|"
                                  "(urn:uuid:)?[{]?[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}[}]?",
                                  std::regex::icase);
    if (!std::regex_match(text, forms)) {
        return std::nullopt;
    }
    std::string digits = text.substr(text.rfind(':') + 1);
    digits.erase(
        std::remove_if(digits.begin(), digits.end(),
                       [](char c) { return std::string(".-{}").find(c) != std::string::npos; }),
        digits.end());
    std::array<Types::u8, 16> bytes{};
    Hex::decode(digits.data(), bytes.data(), bytes.size());
    return Types::UUID(bytes);
}

} // namespace Corvid::Tool
