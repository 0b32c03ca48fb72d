#pragma once

#include <string>
#include <vector>

namespace Corvid::Tool {

/// Rows of cells, aligned in columns.
class Table {
public:
    /// @param indent  blanks before the first column.
    explicit Table(std::size_t indent) : indent_(indent) {}

    /// @param cells  any text; what is not fit for a terminal is escaped.
    void add(std::vector<std::string> cells);

    /// Columns as wide as their widest cell, up to 120 characters, two blanks apart; a longer cell
    /// moves the rest of its row. Columns that are empty in all rows but the first, which has the
    /// headings, are left out.
    /// @param before, after  are put around the first row.
    std::string toString(const std::string& before, const std::string& after) const;

private:
    std::size_t indent_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace Corvid::Tool
