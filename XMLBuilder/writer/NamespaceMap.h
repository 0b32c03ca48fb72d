#pragma once

#include "XMLBuilder/format/Namespaces.h"

#include <map>
#include <string>
#include <string_view>

namespace Corvid::XMLBuilder {

/// The namespaces that one document uses, URI to prefix, in the order of the URIs' code units. Of
/// two prefixes for one URI the first stays. Nothing is ever taken out.
class NamespaceMap {
public:
    using Entries = std::map<std::u16string, std::u16string>;

    /// A map that holds "urn:SMPTE:S377M" to "s377m".
    NamespaceMap();
    NamespaceMap(const NamespaceMap&) = delete;
    NamespaceMap& operator=(const NamespaceMap&) = delete;

    void insert(const char16_t* uri, const char16_t* prefix) { entries_.try_emplace(uri, prefix); }
    void insert(const Names::Namespace& names) { insert(names.uri, names.prefix); }

    /// Inserts the namespace unless its prefix is in use, be it for another URI.
    void insertUnlessPrefixInUse(const Names::Namespace& names);
    /// The same for the two namespaces of the parts of values.
    void insertValueNamespaces();

    /// The URI of the first entry, in the order of the URIs, with that prefix; empty where none has
    /// it. Zero-terminated, and as long-lived as the map.
    std::u16string_view uriOf(std::u16string_view prefix) const;

    Entries::const_iterator begin() const { return entries_.begin(); }
    Entries::const_iterator end() const { return entries_.end(); }

private:
    Entries entries_;
    bool hasValueNamespaces_ = false;
};

} // namespace Corvid::XMLBuilder
