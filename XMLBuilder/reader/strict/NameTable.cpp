#include "XMLBuilder/reader/strict/NameTable.h"

#include "XMLBuilder/format/Namespaces.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Corvid::XMLBuilder {

namespace {

/// @param to  has room for as many units as there are bytes.
/// @return the end.
char16_t* toUtf16(std::string_view utf8, char16_t* to) {
    auto at = utf8.begin();
    while (at != utf8.end()) {
        const auto first = static_cast<unsigned char>(*at++);
        if (first < 0x80) {
            *to++ = static_cast<char16_t>(first);
            continue;
        }
        const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
        char32_t code = first & (0x3FU >> more);
        for (int k = 0; k != more; ++k) {
            code = code << 6 | (static_cast<unsigned char>(*at++) & 0x3FU);
        }
        if (code > 0xFFFF) {
            *to++ = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            *to++ = static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            *to++ = static_cast<char16_t>(code);
        }
    }
    return to;
}

/// A place among so many, a power of two, for a name: by its last bytes, which hold the prefix and
/// the end of the local name.
template <std::size_t places> std::size_t placeOf(std::string_view name) noexcept {
    std::array<std::uint64_t, 2> bytes{};
    const std::size_t count = std::min(name.size(), sizeof bytes);
    std::memcpy(bytes.data(), name.data() + (name.size() - count), count);
    constexpr std::uint64_t mix = 0x9E3779B97F4A7C15;
    const std::uint64_t sum = (bytes[0] * mix ^ bytes[1]) * mix + name.size();
    return (sum >> 48) % places;
}

} // namespace

const char16_t* addUtf8(NodePool& pool, std::string_view utf8) {
    char16_t* const text = pool.addText(utf8.size());
    *toUtf16(utf8, text) = 0;
    return text;
}

std::string_view NameTable::kept(std::string_view text) {
    auto* const copy = static_cast<char*>(keys_.allocate(text.size() + 1, 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}

const char16_t* NameTable::uriOf(std::string_view uri) {
    auto*& recent = recentUris_[placeOf<std::tuple_size<decltype(recentUris_)>::value>(uri)];
    if (recent == nullptr || recent->first != uri) {
        auto known = uris_.find(uri);
        if (known == uris_.end()) {
            known = uris_.emplace(kept(uri), Names::sharedUri(addUtf8(texts_, uri))).first;
        }
        recent = &*known;
    }
    return recent->second;
}

const Name& NameTable::find(std::string_view expanded) {
    const auto first = expanded.find(separator);
    const bool hasUri = first != std::string_view::npos;
    const Key key{hasUri ? uriOf(expanded.substr(0, first)) : nullptr,
                  hasUri ? expanded.substr(first + 1) : expanded};
    auto*& recent = recent_[placeOf<std::tuple_size<decltype(recent_)>::value>(key.rest)];
    if (recent == nullptr || !(recent->first == key)) {
        recent = &entryOf(key);
    }
    return recent->second;
}

const NameTable::Entry& NameTable::entryOf(const Key& key) {
    if (const auto known = names_.find(key); known != names_.end()) {
        return *known;
    }
    const auto second = key.rest.find(separator);
    const std::string_view prefix =
        second == std::string_view::npos ? std::string_view() : key.rest.substr(second + 1);
    char16_t* const text = texts_.addText(key.rest.size());
    char16_t* local = toUtf16(prefix, text);
    if (!prefix.empty()) {
        *local++ = u':';
    }
    *toUtf16(key.rest.substr(0, second), local) = 0;
    return *names_.emplace(Key{key.uri, kept(key.rest)}, Name{text, local, key.uri}).first;
}

} // namespace Corvid::XMLBuilder
