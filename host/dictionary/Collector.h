#pragma once

#include "host/dictionary/Definitions.h"
#include "host/dictionary/DictionaryText.h"
#include "host/dictionary/Tables.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid::MetaMetadata {

/// Gathers definitions and refuses those that contradict others. Names that rows refer to are
/// looked up when everything is there, so texts may come in any order.
class Collector {
public:
    /// Takes over a compiled dictionary.
    void add(const TablesView& tables);

    /// Reads a text. @throws InvalidDictionary  it breaks a rule of the format.
    void add(const DictionaryText& text);

    /// Looks up what rows refer to and hands the definitions over.
    /// @throws InvalidDictionary  a reference leads nowhere or inheritance is unsound.
    Definitions finish();

private:
    struct Place; // where the rows of a text belong

    void readNamespace(Place& place);
    void readSet(Place& place);
    void readExtend(Place& place);
    void readProperty(Place& place);
    void readUse(Place& place);
    void addUse(Place& place, std::size_t statusColumn);

    void addNamespace(NamespaceEntry entry);
    void addSet(SetEntry entry);
    void addElement(ElementEntry entry);

    void resolveParents();
    void resolveExtensions();
    void resolveUses();
    void numberElements();

    /// Properties for a set that another text, or the extended dictionary, defines.
    struct Extension {
        std::string name;
        std::vector<UseEntry> uses;
        Origin origin;
    };

    // No hashes: a dictionary could choose names and numbers that share one.
    using Index = std::map<std::string, std::size_t, std::less<>>;
    const SetEntry* findSet(std::string_view qualifiedName) const;

    Definitions definitions_;
    std::vector<Extension> extensions_;
    Index prefixes_, uris_;
    Index setTags_, setKeys_;
    Index elementNames_, elementLabels_;
    std::map<std::uint32_t, std::size_t> elementTags_, schemaIndexes_;
};

} // namespace Corvid::MetaMetadata
