#include "XMLBuilder/reader/strict/NameTable.h"

#include "XMLBuilder/format/Namespaces.h"

#include <cstddef>

namespace Corvid::XMLBuilder {

void appendUtf16(std::u16string& to, std::string_view utf8) {
    // Nearly all text is ASCII, and has as many units.
    const std::size_t size = to.size();
    to.resize(size + utf8.size());
    std::size_t i = 0;
    for (; i != utf8.size() && static_cast<unsigned char>(utf8[i]) < 0x80; ++i) {
        to[size + i] = static_cast<char16_t>(utf8[i]);
    }
    to.resize(size + i);
    while (i != utf8.size()) {
        const auto first = static_cast<unsigned char>(utf8[i++]);
        if (first < 0x80) {
            to += static_cast<char16_t>(first);
            continue;
        }
        const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
        char32_t code = first & (0x3FU >> more);
        for (int k = 0; k != more; ++k) {
            code = code << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3FU);
        }
        if (code > 0xFFFF) {
            to += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            to += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            to += static_cast<char16_t>(code);
        }
    }
}

std::string_view NameTable::kept(std::string_view text) {
    auto* const copy = static_cast<char*>(keys_.allocate(text.size() + 1, 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}

const char16_t* NameTable::textOf(std::string_view utf8) {
    std::u16string text;
    appendUtf16(text, utf8);
    return texts_.addText(text);
}

const char16_t* NameTable::uriOf(std::string_view uri) {
    if (last_ != nullptr && lastUri_ == uri) {
        return last_;
    }
    auto known = uris_.find(uri);
    if (known == uris_.end()) {
        known = uris_.emplace(kept(uri), Names::sharedUri(textOf(uri))).first;
    }
    lastUri_ = known->first;
    last_ = known->second;
    return last_;
}

const Name& NameTable::find(std::string_view expanded) {
    const auto first = expanded.find(separator);
    const bool hasUri = first != std::string_view::npos;
    const Key key{hasUri ? uriOf(expanded.substr(0, first)) : nullptr,
                  hasUri ? expanded.substr(first + 1) : expanded};
    if (const auto known = names_.find(key); known != names_.end()) {
        return known->second;
    }
    const auto second = key.rest.find(separator);
    qualified_.clear();
    if (second != std::string_view::npos) {
        appendUtf16(qualified_, key.rest.substr(second + 1));
        qualified_ += u':';
    }
    const std::size_t prefixSize = qualified_.size();
    appendUtf16(qualified_, key.rest.substr(0, second));
    const char16_t* const text = texts_.addText(qualified_);
    return names_.emplace(Key{key.uri, kept(key.rest)}, Name{text, text + prefixSize, key.uri})
        .first->second;
}

} // namespace Corvid::XMLBuilder
