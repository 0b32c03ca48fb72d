#pragma once

#include <cstddef>
#include <string_view>

namespace Corvid::XMLUtils {

/// Counts lines and columns as a parser does: from 1, columns in code units of UTF-16.
class TextPlace {
public:
    /// Goes on after the text, which may be a piece of a longer one.
    void pass(std::u16string_view text);

    unsigned long long line() const { return line_; }
    unsigned long long column() const { return column_; }

private:
    unsigned long long line_ = 1;
    unsigned long long column_ = 1;
    bool afterReturn_ = false; ///< a line feed belongs to the carriage return before it
};

} // namespace Corvid::XMLUtils
