#pragma once

#include "XMLBuilder/reader/nodes/NodePool.h"
#include "host/base/KeyedHash.h"

#include <functional>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Corvid::XMLBuilder {

/// Appends well-formed UTF-8 as UTF-16.
void appendUtf16(std::u16string& to, std::string_view utf8);

/// A name that came up; its texts stay as long as the parser.
struct Name {
    const char16_t* qualified;
    const char16_t* local;
    const char16_t* uri; ///< null for none
};

/// The names of a document, each once. What a document chooses is found under a secret key, and a
/// namespace is kept once however many names it has.
class NameTable {
public:
    /// Between the parts of a name as expat gives it; no name or URI has it.
    static constexpr char separator = '\x01';

    /// @param expanded  as expat gives it: "URI separator local separator prefix", without prefix
    ///                  "URI separator local", without namespace "local"; UTF-8.
    const Name& find(std::string_view expanded);

private:
    struct Key {
        const char16_t* uri;
        std::string_view rest;
        friend bool operator==(const Key& a, const Key& b) {
            return a.uri == b.uri && a.rest == b.rest;
        }
    };
    struct Hash {
        KeyedHash hash{KeyedHash::randomKey()};
        std::size_t operator()(std::string_view text) const noexcept {
            return static_cast<std::size_t>(
                hash(reinterpret_cast<const unsigned char*>(text.data()), text.size()));
        }
        std::size_t operator()(const Key& key) const noexcept {
            return (*this)(key.rest) ^ std::hash<const void*>()(key.uri);
        }
    };

    std::string_view kept(std::string_view text);
    const char16_t* textOf(std::string_view utf8);
    const char16_t* uriOf(std::string_view uri);

    std::unordered_map<std::string_view, const char16_t*, Hash> uris_{16, Hash()};
    std::unordered_map<Key, Name, Hash> names_{64, Hash()};
    std::string_view lastUri_;
    const char16_t* last_ = nullptr;
    std::u16string qualified_; ///< used by find()
    std::pmr::monotonic_buffer_resource keys_;
    NodePool texts_;
};

} // namespace Corvid::XMLBuilder
