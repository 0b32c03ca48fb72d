#include "host/dictionary/Collector.h"

#include "host/base/Text.h"
#include "host/dictionary/DictionaryLimits.h"
#include "host/dictionary/Inheritance.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace Corvid::MetaMetadata {

namespace {

/// The part of a label that is matched, as a key for an index.
std::string matchKey(LabelBytes label) {
    label[7] = 0;
    return std::string(label.begin(), label.end());
}

std::uint32_t numberIn(const std::string& text) {
    std::uint32_t result = 0;
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

/// Notes an entry under a key that no other entry may have.
template <class Map, class Key, class Entries>
void claim(Map& index, const Key& key, const Definitions& definitions, const Entries& entries,
           const Origin& origin, const std::string& what) {
    const auto [place, fresh] = index.emplace(key, entries.size());
    if (!fresh) {
        const auto& other = entries[place->second];
        refuse(origin, what + " is taken already by " + definitions.nameOf(other) + " in " +
                           toString(other.origin));
    }
}

} // namespace

void Collector::add(const TablesView& tables) {
    const auto text = [&tables](std::uint32_t place) {
        return Platform::toUtf8(tables.text(place));
    };
    for (const NamespaceRow& row : tables.namespaces) {
        addNamespace({text(row.prefix), text(row.uri), {}});
    }
    for (const ElementRow& row : tables.elements) {
        ElementEntry entry;
        entry.label = row.label;
        entry.space = row.space;
        entry.tagName = text(row.tagName);
        entry.schemaIndex = numberIn(text(row.schemaIndex));
        entry.staticTag = row.staticTag;
        entry.type = static_cast<Types::Identifiers::Identifier>(row.type);
        entry.itemType = static_cast<Types::Identifiers::Identifier>(row.itemType);
        addElement(std::move(entry));
    }
    for (const SetRow& row : tables.sets) {
        SetEntry entry;
        entry.key = row.key;
        entry.space = row.space;
        entry.tagName = text(row.tagName);
        entry.parent = row.parent == noRow ? noEntry : row.parent;
        entry.concrete = row.concrete != 0;
        for (std::uint32_t i = 0; i != row.useCount; ++i) {
            const UseRow& use = tables.uses[row.firstUse + i];
            UseEntry known;
            known.element = use.element;
            known.status = static_cast<AttributeRequiredStatus::Status>(use.status);
            entry.uses.push_back(std::move(known));
        }
        addSet(std::move(entry));
    }
}

void Collector::addNamespace(NamespaceEntry entry) {
    const auto& known = definitions_.namespaces;
    const auto byPrefix = prefixes_.find(entry.prefix);
    if (byPrefix != prefixes_.end() && known[byPrefix->second].uri == entry.uri) {
        return;
    }
    const auto taken = [&](const NamespaceEntry& other) {
        refuse(entry.origin, "prefix " + entry.prefix + " for " + entry.uri +
                                 " contradicts prefix " + other.prefix + " for " + other.uri +
                                 " in " + toString(other.origin));
    };
    if (byPrefix != prefixes_.end()) {
        taken(known[byPrefix->second]);
    }
    if (const auto byUri = uris_.find(entry.uri); byUri != uris_.end()) {
        taken(known[byUri->second]);
    }
    if (known.size() == mostNamespaces) {
        refuse(entry.origin, "namespace " + entry.prefix + ": expected at most " +
                                 std::to_string(mostNamespaces) +
                                 " namespaces, the built-in ones included");
    }
    prefixes_.emplace(entry.prefix, known.size());
    uris_.emplace(entry.uri, known.size());
    definitions_.namespaces.push_back(std::move(entry));
}

void Collector::addSet(SetEntry entry) {
    const auto check = [this, &entry](auto& index, const auto& key, const char* what) {
        claim(index, key, definitions_, definitions_.sets, entry.origin,
              "set " + definitions_.nameOf(entry) + ": its " + what);
    };
    check(setTags_, entry.tagName, "tag name");
    check(setKeys_, matchKey(entry.key), "key");
    definitions_.sets.push_back(std::move(entry));
}

void Collector::addElement(ElementEntry entry) {
    const auto check = [this, &entry](auto& index, const auto& key, const char* what) {
        claim(index, key, definitions_, definitions_.elements, entry.origin,
              "property " + definitions_.nameOf(entry) + ": its " + what);
    };
    check(elementNames_, definitions_.nameOf(entry), "name");
    check(elementLabels_, matchKey(entry.label), "label");
    if (entry.staticTag != 0) {
        check(elementTags_, entry.staticTag, "local tag");
    }
    if (entry.schemaIndex != 0) {
        check(schemaIndexes_, entry.schemaIndex, "SchemaIndex");
    }
    definitions_.elements.push_back(std::move(entry));
}

Definitions Collector::finish() {
    resolveParents();
    resolveExtensions();
    resolveUses();
    numberElements();
    checkInheritance(definitions_);
    return std::move(definitions_);
}

const SetEntry* Collector::findSet(std::string_view qualifiedName) const {
    const std::size_t colon = qualifiedName.find(':');
    const auto place = setTags_.find(qualifiedName.substr(colon + 1));
    if (place == setTags_.end()) {
        return nullptr;
    }
    const SetEntry& set = definitions_.sets[place->second];
    return definitions_.nameOf(set) == qualifiedName ? &set : nullptr;
}

void Collector::resolveParents() {
    for (SetEntry& set : definitions_.sets) {
        if (!set.parentName.empty()) {
            const SetEntry* parent = findSet(set.parentName);
            if (parent == nullptr) {
                refuse(set.origin, "set " + definitions_.nameOf(set) + " inherits from " +
                                       set.parentName + ", which is not defined");
            }
            set.parent = static_cast<std::size_t>(parent - definitions_.sets.data());
        }
    }
}

void Collector::resolveExtensions() {
    // Two texts may extend one set: its properties have the same order in whatever order those
    // came.
    std::stable_sort(
        extensions_.begin(), extensions_.end(),
        [](const Extension& a, const Extension& b) { return a.origin.text < b.origin.text; });
    for (Extension& extension : extensions_) {
        const SetEntry* found = findSet(extension.name);
        if (found == nullptr) {
            refuse(extension.origin, "set " + extension.name + " to extend is not defined");
        }
        auto& uses =
            definitions_.sets[static_cast<std::size_t>(found - definitions_.sets.data())].uses;
        std::move(extension.uses.begin(), extension.uses.end(), std::back_inserter(uses));
    }
}

void Collector::resolveUses() {
    for (SetEntry& set : definitions_.sets) {
        for (UseEntry& use : set.uses) {
            if (use.element == noEntry) {
                const auto place = elementNames_.find(use.name);
                if (place == elementNames_.end()) {
                    refuse(use.origin, "property " + use.name + " is not defined");
                }
                use.element = place->second;
            }
        }
    }
}

void Collector::numberElements() {
    std::uint32_t last = 0;
    for (const ElementEntry& element : definitions_.elements) {
        last = std::max(last, element.schemaIndex);
    }
    for (ElementEntry& element : definitions_.elements) {
        if (element.schemaIndex == 0) {
            element.schemaIndex = ++last;
        }
    }
}

} // namespace Corvid::MetaMetadata
