#include "host/dictionary/RowReader.h"

namespace Corvid::MetaMetadata {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

RowReader::RowReader(const DictionaryText& text, Comments comments) noexcept
    : name_(text.name), rest_(text.content), comments_(comments) {
    if (rest_.substr(0, byteOrderMark.size()) == byteOrderMark) {
        rest_.remove_prefix(byteOrderMark.size());
    }
}

bool RowReader::next() {
    while (!rest_.empty()) {
        const std::size_t end = rest_.find('\n');
        const std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        ++line_;
        split(line);
        if (!columns_.empty()) {
            return true;
        }
    }
    return false;
}

// Even where columns may be comments, a number sign within one is none: URIs may hold it.
void RowReader::split(std::string_view line) {
    columns_.clear();
    for (;;) {
        const std::size_t start = line.find_first_not_of(blanks);
        const bool mayBeComment = columns_.empty() || comments_ == Comments::atColumns;
        if (start == std::string_view::npos || (mayBeComment && line[start] == '#')) {
            return;
        }
        line.remove_prefix(start);
        const std::size_t end = line.find_first_of(blanks);
        columns_.push_back(line.substr(0, end));
        line.remove_prefix(end == std::string_view::npos ? line.size() : end);
    }
}

} // namespace Corvid::MetaMetadata
