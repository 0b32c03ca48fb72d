#pragma once

#include "host/dictionary/Definitions.h"
#include "host/dictionary/DictionaryText.h"

#include <string_view>
#include <vector>

namespace Corvid::MetaMetadata {

/// Takes a dictionary's text apart: lines, comments, columns.
class RowReader {
public:
    /// Where a number sign begins a comment.
    enum class Comments {
        atColumns, ///< wherever a column could begin
        atLines,   ///< only at the front of a line, so that names may hold words such as "#1"
    };

    /// @param text  borrowed; must outlive the reader and the columns that it gives.
    explicit RowReader(const DictionaryText& text,
                       Comments comments = Comments::atColumns) noexcept;

    /// Steps to the next line that holds more than blanks and a comment. False at the end.
    bool next();

    const std::vector<std::string_view>& columns() const noexcept { return columns_; }
    Origin origin() const noexcept { return {name_, line_}; }

private:
    void split(std::string_view line);

    std::string_view name_;
    std::string_view rest_;
    Comments comments_;
    std::size_t line_ = 0;
    std::vector<std::string_view> columns_;
};

} // namespace Corvid::MetaMetadata
