#pragma once

#include "XMLBuilder/reader/nodes/NodePool.h"
#include "host/base/TextHash.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Corvid::XMLBuilder {

/// The texts of a document that stay while it is read, each kept once by who asks.
class KeptTexts {
public:
    std::string_view keep(std::string_view text);

private:
    std::pmr::monotonic_buffer_resource memory_;
};

/// The namespaces of prefixes while a document is read (Namespaces in XML 1.0). Texts are UTF-8.
///
/// expat would look after them, too, but copies the namespace in front of each name; to look for a
/// name as it is written costs less, and a document declares few namespaces, most at its root.
class NamespaceScopes {
public:
    NamespaceScopes();
    NamespaceScopes(const NamespaceScopes&) = delete;
    NamespaceScopes& operator=(const NamespaceScopes&) = delete;

    /// Whether an attribute declares a namespace.
    static bool isDeclaration(std::string_view attribute) noexcept;

    /// An element begins.
    void open() noexcept { ++depth_; }
    /// The element that began last has an attribute that declares a namespace.
    /// @return what is wrong with that; empty where nothing is.
    std::string declare(std::string_view attribute, std::string_view uri);
    /// The innermost element ends.
    void close() noexcept;

    /// The namespace of a prefix; that of elements without one for an empty prefix, an empty text
    /// where they have none. A namespace is the same text for all its prefixes, and stays as long
    /// as the object.
    /// @return null where nothing declares the prefix.
    const char16_t* find(std::string_view prefix) const;

    /// What is declared here, as a number: the same number, the same namespaces.
    std::uint64_t scope() const noexcept { return levels_.empty() ? 0 : levels_.back().scope; }

private:
    using Bindings = std::unordered_map<std::string_view, const char16_t*, TextHash>;

    struct Change {
        const char16_t** binding;
        const char16_t* before;
    };
    /// An open element that declares something.
    struct Level {
        std::size_t depth;
        std::uint64_t scope;
        std::size_t firstChange;
    };

    const char16_t* kept(std::string_view uri);

    Bindings bindings_{16, TextHash()}; ///< by prefix; null once the declaration has ended
    Bindings uris_{16, TextHash()};     ///< each namespace, as it is kept
    std::vector<Change> changes_;
    std::vector<Level> levels_;
    std::size_t depth_ = 0;
    std::uint64_t lastScope_ = 0;
    KeptTexts keys_;
    NodePool texts_;
};

/// Whether a name has at most one colon, and a name on both sides of it. expat has seen to the
/// rest.
bool isQualifiedName(std::string_view name) noexcept;

} // namespace Corvid::XMLBuilder
