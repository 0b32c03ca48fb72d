#include "tools/corvid/page/HtmlText.h"

#include <algorithm>

namespace Corvid::Tool {

std::string htmlText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        switch (character) {
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '&':
            result += "&amp;";
            break;
        default:
            result += character;
        }
    }
    return result;
}

void HtmlJsonSink::write(const unsigned char* bytes, std::size_t count) {
    static constexpr unsigned char escape[] = {'\\', 'u', '0', '0', '3', 'c'};
    const unsigned char* const end = bytes + count;
    while (bytes != end) {
        const unsigned char* const found = std::find(bytes, end, '<');
        target_.write(bytes, static_cast<std::size_t>(found - bytes));
        bytes = found;
        if (bytes != end) {
            target_.write(escape, sizeof escape);
            ++bytes;
        }
    }
}

} // namespace Corvid::Tool
