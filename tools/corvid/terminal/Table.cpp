#include "tools/corvid/terminal/Table.h"

#include "tools/corvid/terminal/Printable.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

/// A cell that is wider leaves the column as it is: all other rows would be filled up with blanks.
constexpr std::size_t greatestWidth = 120;

/// Characters, one column each; combining and wide ones are taken as others.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
    }));
}

} // namespace

void Table::add(std::vector<std::string> cells) {
    for (std::string& cell : cells) {
        cell = printable(cell);
    }
    rows_.push_back(std::move(cells));
}

std::string Table::toString(const std::string& before, const std::string& after) const {
    std::vector<std::size_t> widths;
    std::vector<bool> used;
    for (std::size_t row = 0; row != rows_.size(); ++row) {
        widths.resize(std::max(widths.size(), rows_[row].size()));
        used.resize(widths.size());
        for (std::size_t i = 0; i != rows_[row].size(); ++i) {
            widths[i] = std::max(widths[i], std::min(widthOf(rows_[row][i]), greatestWidth));
            used[i] = used[i] || (row != 0 && !rows_[row][i].empty());
        }
    }
    std::string text;
    for (std::size_t row = 0; row != rows_.size(); ++row) {
        std::string line(indent_, ' ');
        for (std::size_t i = 0; i != rows_[row].size(); ++i) {
            if (used[i]) {
                const std::size_t width = widthOf(rows_[row][i]);
                line += rows_[row][i];
                line.append(widths[i] - std::min(widths[i], width) + 2, ' ');
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text.append(row == 0 ? before : std::string()).append(line);
        text.append(row == 0 ? after : std::string()).push_back('\n');
    }
    return text;
}

} // namespace Corvid::Tool
