#pragma once

#include "XMLBuilder/reader/stream/NamespaceScopes.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Corvid::XMLBuilder {

/// A name that came up; its texts stay as long as the parser.
struct Name {
    const char16_t* qualified;
    const char16_t* local;
    std::uint32_t localHash; ///< see HashedName
    const char16_t* uri;     ///< null for none
};

/// The names of a document, each once. What a document chooses is found under a secret key.
class NameTable {
public:
    enum class Of : unsigned char { element, attribute };

    /// The namespaces of the element at hand.
    NamespaceScopes& namespaces() noexcept { return namespaces_; }

    /// @param qualified  as the document has it; UTF-8.
    /// @return null where it is no name with a namespace; problem() says why.
    const Name* find(std::string_view qualified, Of what);
    static std::string problem(std::string_view qualified);

private:
    struct Key {
        const char16_t* uri;
        std::string_view qualified;
        friend bool operator==(const Key& a, const Key& b) {
            return a.uri == b.uri && a.qualified == b.qualified;
        }
    };
    struct Hash : TextHash {
        std::size_t operator()(const Key& key) const noexcept {
            return TextHash::operator()(key.qualified) ^ std::hash<const void*>()(key.uri);
        }
    };
    using Entry = std::pair<const Key, Name>;

    struct Recent {
        const Entry* entry = nullptr;
        std::uint64_t scope = 0;
        Of what = Of::element;
    };

    const Entry* entryOf(std::string_view qualified, Of what);

    NamespaceScopes namespaces_;
    std::unordered_map<Key, Name, Hash> names_{64, Hash()};
    /// Those found last, by some of their bytes: a document has few names, and to ask for one under
    /// the secret key takes longer than all else. Names that share a place take turns.
    std::array<Recent, 1024> recent_{};
    KeptTexts keys_;
    NodePool texts_;
};

} // namespace Corvid::XMLBuilder
