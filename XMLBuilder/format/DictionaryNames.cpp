#include "XMLBuilder/format/DictionaryNames.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/format/HashedName.h"
#include "host/dictionary/Dictionary.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;

/// Entries are in the order of a hash, and of the names that share one: a dictionary may be
/// anybody's, so the hash makes a search quicker and never longer than one by names.
template <class Definition> class Index final : public Platform::Attached::Content {
public:
    using Key = std::pair<std::u16string_view, std::u16string_view>; // local name, URI

    template <class Iterator, class MakeKey> Index(Iterator begin, Iterator end, MakeKey keyOf) {
        entries_.reserve(static_cast<std::size_t>(end - begin));
        for (; begin != end; ++begin) {
            entries_.emplace_back(keyOf(**begin), *begin);
        }
        std::stable_sort(entries_.begin(), entries_.end(),
                         [](const Entry& a, const Entry& b) { return a.name < b.name; });
    }

    const Definition* find(const Key& key) const {
        const HashedKey name(key);
        const auto entry =
            std::lower_bound(entries_.begin(), entries_.end(), name,
                             [](const Entry& a, const HashedKey& b) { return a.name < b; });
        return entry == entries_.end() || name < entry->name ? nullptr : entry->definition;
    }

private:
    struct HashedKey {
        explicit HashedKey(const Key& of) noexcept : key(of), hash(HashedName::of(of.first)) {}

        friend bool operator<(const HashedKey& a, const HashedKey& b) noexcept {
            if (a.hash != b.hash) {
                return a.hash < b.hash;
            }
            const int local = compare(a.key.first, b.key.first);
            return local != 0 ? local < 0 : compare(a.key.second, b.key.second) < 0;
        }
        /// Any order does.
        static int compare(std::u16string_view a, std::u16string_view b) noexcept {
            if (a.size() != b.size() || a.empty()) { // an empty one may point nowhere
                return a.size() < b.size() ? -1 : a.size() != b.size();
            }
            return std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t));
        }

        Key key;
        std::uint32_t hash;
    };
    struct Entry {
        Entry(const Key& key, const Definition* of) noexcept : name(key), definition(of) {}

        HashedKey name;
        const Definition* definition;
    };

    std::vector<Entry> entries_;
};

template <class Definition> typename Index<Definition>::Key expandedName(const Definition& of) {
    return {textOf(of, "XMLTagName"), textOf(of, "XMLNamespaceURI")};
}

typename Index<MetaMetadataSet>::Key localName(const MetaMetadataSet& of) {
    return {textOf(of, "XMLTagName"), {}};
}

typename Index<MetaMetadataSet>::Key nameOfNamespace(const MetaMetadataSet& of) {
    return {{}, textOf(of, "XMLNamespaceURI")};
}

/// The index in a slot.
/// @param keyOf  gives the key of a definition.
template <class Definition, class Iterator, class MakeKey>
const Index<Definition>& indexIn(const Platform::Attached& slot, Iterator begin, Iterator end,
                                 MakeKey keyOf) {
    return slot.get<Index<Definition>>(
        [&] { return std::make_unique<Index<Definition>>(begin, end, keyOf); });
}

} // namespace

const MetaMetadataSet* DictionaryNames::findSet(std::u16string_view local) const {
    return indexIn<MetaMetadataSet>(setsByLocal_, dictionary_.metaMetadataSetBegin(),
                                    dictionary_.metaMetadataSetEnd(), localName)
        .find({local, {}});
}

const MetaMetadataSet* DictionaryNames::findSet(std::u16string_view uri,
                                                std::u16string_view local) const {
    return indexIn<MetaMetadataSet>(sets_, dictionary_.metaMetadataSetBegin(),
                                    dictionary_.metaMetadataSetEnd(), expandedName<MetaMetadataSet>)
        .find({local, uri});
}

const MetaElement* DictionaryNames::findProperty(std::u16string_view uri,
                                                 std::u16string_view local) const {
    return indexIn<MetaElement>(properties_, dictionary_.metaElementBegin(),
                                dictionary_.metaElementEnd(), expandedName<MetaElement>)
        .find({local, uri});
}

bool DictionaryNames::hasSetsIn(std::u16string_view uri) const {
    return indexIn<MetaMetadataSet>(namespacesOfSets_, dictionary_.metaMetadataSetBegin(),
                                    dictionary_.metaMetadataSetEnd(), nameOfNamespace)
               .find({{}, uri}) != nullptr;
}

const DictionaryNames& namesOf(const MetaMetadata::Dictionary& dictionary) {
    return dictionary.documentNames().get<DictionaryNames>(
        [&] { return std::make_unique<DictionaryNames>(dictionary); });
}

} // namespace Corvid::XMLBuilder
