#include "tools/corvid/terminal/Lines.h"

#include <iterator>
#include <sstream>

namespace Corvid::Tool {

std::string joined(const std::vector<std::string>& items, const char* between) {
    std::string line;
    for (const std::string& item : items) {
        line += (line.empty() || item.empty() ? "" : between) + item;
    }
    return line;
}

std::string wrapped(const std::vector<std::string>& items, const std::string& between,
                    std::size_t indent) {
    constexpr std::size_t columns = 80;
    const std::string endOfLine = between.substr(0, between.find_last_not_of(' ') + 1) + "\n";
    std::string result;
    std::string line;
    for (std::size_t i = 0; i != items.size(); ++i) {
        const std::size_t behind = i + 1 == items.size() ? 0 : endOfLine.size() - 1;
        const std::size_t width = indent + line.size() + between.size() + items[i].size() + behind;
        if (!line.empty() && width > columns) {
            result.append(indent, ' ').append(line).append(endOfLine);
            line.clear();
        }
        line += (line.empty() ? "" : between) + items[i];
    }
    return line.empty() ? result : result + std::string(indent, ' ') + line + "\n";
}

std::string wrappedWords(const std::string& text, std::size_t indent) {
    std::istringstream stream(text);
    const std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
    return wrapped(words, " ", indent);
}

} // namespace Corvid::Tool
