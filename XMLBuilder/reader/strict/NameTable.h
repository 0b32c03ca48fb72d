#pragma once

#include "XMLBuilder/reader/nodes/NodePool.h"
#include "host/base/KeyedHash.h"

#include <array>
#include <functional>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Corvid::XMLBuilder {

/// Text that is well-formed UTF-8, as UTF-16 with a terminator.
const char16_t* addUtf8(NodePool& pool, std::string_view utf8);

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

    using Entry = std::pair<const Key, Name>;

    const Entry& entryOf(const Key& key);
    std::string_view kept(std::string_view text);
    const char16_t* uriOf(std::string_view uri);

    std::unordered_map<std::string_view, const char16_t*, Hash> uris_{16, Hash()};
    std::unordered_map<Key, Name, Hash> names_{64, Hash()};
    /// Those found last, by some of their bytes: a document has few names, and to ask for one under
    /// the secret key takes longer than all else. Names that share a place take turns.
    std::array<const std::pair<const std::string_view, const char16_t*>*, 16> recentUris_{};
    std::array<const Entry*, 256> recent_{};
    std::pmr::monotonic_buffer_resource keys_;
    NodePool texts_;
};

} // namespace Corvid::XMLBuilder
