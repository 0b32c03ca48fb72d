#pragma once

#include "XMLBuilder/Namespaces.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Corvid::MetaMetadata {
class MetaDefinition;
}

namespace Corvid::XMLBuilder {

/// The namespaces that one document uses, URI to prefix, in the order of the URIs' code units. Of
/// two prefixes for one URI the first stays. Nothing is ever taken out.
///
/// It also keeps the names that it made of dictionary entries, because a document names the same
/// few hundred of them over and over.
class NamespaceMap {
public:
    using Entries = std::map<std::u16string, std::u16string>;

    /// How a dictionary entry is named in the document.
    struct NodeName {
        std::u16string qualified;
        const XMLCh* uri;
        const XMLCh* prefix;
        bool identifies; ///< it is InstanceUID or GenerationUID, which are attributes of their set
    };

    /// A map that holds "urn:SMPTE:S377M" to "s377m".
    NamespaceMap();
    NamespaceMap(const NamespaceMap&) = delete;
    NamespaceMap& operator=(const NamespaceMap&) = delete;

    void insert(const XMLCh* uri, const XMLCh* prefix) { entries_.try_emplace(uri, prefix); }
    void insert(const Names::Namespace& names) { insert(names.uri, names.prefix); }

    /// Inserts the namespace unless its prefix is in use, be it for another URI.
    void insertUnlessPrefixInUse(const Names::Namespace& names);
    /// The same for the two namespaces of the parts of values.
    void insertValueNamespaces();

    /// The URI of the first entry, in the order of the URIs, with that prefix; empty where none has
    /// it. Zero-terminated, and as long-lived as the map.
    std::u16string_view uriOf(const XMLCh* prefix) const;

    /// Names an entry by its prefix and tag, and takes its namespace in.
    const NodeName& nameOf(const MetaMetadata::MetaDefinition& definition);
    /// The name of a link to a set of that class: its own with "_REF" behind. Takes nothing in.
    const NodeName& linkNameOf(const MetaMetadata::MetaDefinition& definition);

    Entries::const_iterator begin() const { return entries_.begin(); }
    Entries::const_iterator end() const { return entries_.end(); }

private:
    using Cache = std::unordered_map<const MetaMetadata::MetaDefinition*, NodeName>;

    Entries entries_;
    Cache names_;
    Cache linkNames_;
    bool hasValueNamespaces_ = false;
};

} // namespace Corvid::XMLBuilder
