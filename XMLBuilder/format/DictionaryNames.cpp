#include "XMLBuilder/format/DictionaryNames.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "host/dictionary/Dictionary.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;

/// Names are found by comparing them and not by a hash, for a dictionary may be anybody's.
template <class Definition> class Index final : public Platform::Attached::Content {
public:
    using Key = std::pair<std::u16string_view, std::u16string_view>; // local name, URI

    template <class Iterator, class MakeKey> Index(Iterator begin, Iterator end, MakeKey keyOf) {
        entries_.reserve(static_cast<std::size_t>(end - begin));
        for (; begin != end; ++begin) {
            entries_.emplace_back(keyOf(**begin), *begin);
        }
        std::stable_sort(entries_.begin(), entries_.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
    }

    const Definition* find(const Key& key) const {
        const auto entry =
            std::lower_bound(entries_.begin(), entries_.end(), key,
                             [](const auto& a, const Key& b) { return a.first < b; });
        return entry == entries_.end() || entry->first != key ? nullptr : entry->second;
    }

private:
    std::vector<std::pair<Key, const Definition*>> entries_;
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
