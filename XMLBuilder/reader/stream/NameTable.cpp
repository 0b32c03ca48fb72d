#include "XMLBuilder/reader/stream/NameTable.h"

#include "XMLBuilder/format/HashedName.h"
#include "XMLBuilder/reader/nodes/NodeText.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace Corvid::XMLBuilder {

namespace {

/// A place among so many, a power of two, for a name: by its last bytes.
std::size_t placeOf(std::string_view name, std::size_t places) noexcept {
    std::array<std::uint64_t, 2> bytes{};
    const std::size_t count = std::min(name.size(), sizeof bytes);
    std::memcpy(bytes.data(), name.data() + (name.size() - count), count);
    constexpr std::uint64_t mix = 0x9E3779B97F4A7C15;
    const std::uint64_t sum = (bytes[0] * mix ^ bytes[1]) * mix + name.size();
    return (sum >> 48) % places;
}

} // namespace

const Name* NameTable::find(std::string_view qualified, Of what) {
    Recent& recent = recent_[placeOf(qualified, recent_.size())];
    if (recent.entry == nullptr || recent.scope != namespaces_.scope() || recent.what != what ||
        recent.entry->first.qualified != qualified) {
        recent = {entryOf(qualified, what), namespaces_.scope(), what};
    }
    return recent.entry == nullptr ? nullptr : &recent.entry->second;
}

std::string NameTable::problem(std::string_view qualified) {
    const std::string name(qualified);
    if (!isQualifiedName(qualified)) {
        return "'" + name + "', expected a name with at most one colon, and a name on both sides";
    }
    const std::string prefix = name.substr(0, name.find(':'));
    return "the prefix of '" + name + "' is declared nowhere, expected " +
           (prefix == "xmlns" ? std::string("another: xmlns is for declarations")
                              : "an attribute 'xmlns:" + prefix + "' here or around it");
}

const NameTable::Entry* NameTable::entryOf(std::string_view qualified, Of what) {
    const auto colon = qualified.find(':');
    const bool hasPrefix = colon != std::string_view::npos;
    const char16_t* uri = u""; // of an attribute without prefix
    if (hasPrefix || what == Of::element) {
        uri = namespaces_.find(hasPrefix ? qualified.substr(0, colon) : std::string_view());
    }
    if (uri == nullptr || !isQualifiedName(qualified)) {
        return nullptr;
    }
    if (*uri == 0) {
        uri = nullptr;
    }
    const auto known = names_.find(Key{uri, qualified});
    if (known != names_.end()) {
        return &*known;
    }
    const char16_t* const text = addUtf8(texts_, qualified).data();
    const char16_t* const local =
        hasPrefix ? text + std::u16string_view(text).find(u':') + 1 : text;
    return &*names_
                 .emplace(Key{uri, keys_.keep(qualified)},
                          Name{text, local, HashedName::of(local), uri})
                 .first;
}

} // namespace Corvid::XMLBuilder
