#include "host/dictionary/Loader.h"

#include "host/base/Text.h"
#include "host/dictionary/Collector.h"
#include "host/dictionary/LabelMatch.h"

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>

namespace Corvid::MetaMetadata {

namespace {

/// The pool of texts; each text is there once.
class TextPool {
public:
    explicit TextPool(std::vector<unsigned short>& units) : units_(units) {}

    std::uint32_t place(const std::string& text) {
        const auto [known, fresh] =
            places_.emplace(text, static_cast<std::uint32_t>(units_.size()));
        if (fresh) {
            const Utf16Text wide = Platform::fromUtf8(text);
            units_.insert(units_.end(), wide.begin(), wide.end());
            units_.push_back(0);
        }
        return known->second;
    }

private:
    std::vector<unsigned short>& units_;
    std::map<std::string, std::uint32_t> places_; // no hash: a dictionary chooses the texts
};

/// The order of entries by a member, and the place that each entry gets.
template <class Entry, class Member> struct Sorted {
    std::vector<std::size_t> order;   ///< entries in their new order
    std::vector<std::uint32_t> place; ///< of each entry

    Sorted(const std::vector<Entry>& entries, Member Entry::*key)
        : order(entries.size()), place(entries.size()) {
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::sort(order.begin(), order.end(), [&entries, key](std::size_t a, std::size_t b) {
            return entries[a].*key < entries[b].*key;
        });
        for (std::size_t i = 0; i != order.size(); ++i) {
            place[order[i]] = static_cast<std::uint32_t>(i);
        }
    }
};

/// The rows of a table, sorted by a member.
template <class Row, class Member, class Less>
std::vector<std::uint32_t> sortedRows(const std::vector<Row>& table, Member Row::*key, Less less) {
    std::vector<std::uint32_t> rows(table.size());
    std::iota(rows.begin(), rows.end(), std::uint32_t{0});
    std::sort(rows.begin(), rows.end(),
              [&](std::uint32_t a, std::uint32_t b) { return less(table[a].*key, table[b].*key); });
    return rows;
}

void sortForLookup(Tables& tables) {
    tables.setsByKey = sortedRows(tables.sets, &SetRow::key, LabelMatchLess());
    tables.elementsByLabel = sortedRows(tables.elements, &ElementRow::label, LabelMatchLess());
    auto& byTag = tables.elementsByTag;
    byTag = sortedRows(tables.elements, &ElementRow::staticTag, std::less<>());
    byTag.erase(byTag.begin(), std::find_if(byTag.begin(), byTag.end(), [&](std::uint32_t row) {
                    return tables.elements[row].staticTag != 0;
                }));
}

Tables compile(const Definitions& definitions) {
    Tables result;
    TextPool texts(result.texts);
    // Prefixes sort the namespaces: the same definitions give the same tables in whatever order the
    // texts came.
    const Sorted spaces(definitions.namespaces, &NamespaceEntry::prefix);
    const Sorted sets(definitions.sets, &SetEntry::key);
    const Sorted elements(definitions.elements, &ElementEntry::label);

    for (const std::size_t i : spaces.order) {
        const NamespaceEntry& entry = definitions.namespaces[i];
        result.namespaces.push_back({texts.place(entry.prefix), texts.place(entry.uri)});
    }
    for (const std::size_t i : elements.order) {
        const ElementEntry& entry = definitions.elements[i];
        result.elements.push_back(
            {entry.label, spaces.place[entry.space], texts.place(entry.tagName),
             texts.place(std::to_string(entry.schemaIndex)), entry.staticTag,
             static_cast<std::uint8_t>(entry.type), static_cast<std::uint8_t>(entry.itemType)});
    }
    for (const std::size_t i : sets.order) {
        const SetEntry& entry = definitions.sets[i];
        result.sets.push_back({entry.key, spaces.place[entry.space], texts.place(entry.tagName),
                               entry.parent == noEntry ? noRow : sets.place[entry.parent],
                               entry.concrete ? 1U : 0U,
                               static_cast<std::uint32_t>(result.uses.size()),
                               static_cast<std::uint32_t>(entry.uses.size())});
        for (const UseEntry& use : entry.uses) {
            result.uses.push_back({elements.place[use.element], use.status});
        }
    }
    sortForLookup(result);
    return result;
}

} // namespace

Tables load(const TablesView* base, const Rows<DictionaryText>& texts) {
    Collector collector;
    if (base != nullptr) {
        collector.add(*base);
    }
    for (const DictionaryText& text : texts) {
        collector.add(text);
    }
    return compile(collector.finish());
}

} // namespace Corvid::MetaMetadata
