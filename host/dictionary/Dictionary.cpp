#include "host/dictionary/Dictionary.h"

#include "host/dictionary/BuiltInTables.h"
#include "host/dictionary/LabelMatch.h"
#include "host/dictionary/Loader.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace Corvid::MetaMetadata {

namespace {

/// The row of a table, found in the order of a member by its value; or noRow.
template <class Row, class Member, class Less>
std::uint32_t findRow(const Rows<std::uint32_t>& order, const Rows<Row>& table, Member Row::*member,
                      const Member& wanted, Less less) noexcept {
    const auto* const place =
        std::lower_bound(order.begin(), order.end(), wanted, [&](auto row, const Member& value) {
            return less(table[row].*member, value);
        });
    return place == order.end() || less(wanted, table[*place].*member) ? noRow : *place;
}

} // namespace

struct Dictionary::Content {
    explicit Content(Tables owned) : memory(std::move(owned)), tables(memory.view()) { build(); }
    explicit Content(const TablesView& borrowed) : tables(borrowed) { build(); }

    void build();
    MetaDefinition::Names names(std::uint32_t space, std::uint32_t tagName) const noexcept {
        const NamespaceRow& row = tables.namespaces[space];
        return {tables.text(tagName), tables.text(row.uri), tables.text(row.prefix), nullptr};
    }
    std::unique_ptr<MetaElement> makeElement(const ElementRow& row) const;

    Tables memory; // empty where the tables are the compiled ones
    TablesView tables;
    std::vector<std::unique_ptr<MetaMetadataSet>> ownedSets;
    std::vector<std::unique_ptr<MetaElement>> ownedElements;
    std::vector<const MetaMetadataSet*> sets; // in the order of their rows
    std::vector<const MetaElement*> elements; // in the order of their rows
    Platform::Attached documentNames;
};

std::unique_ptr<MetaElement> Dictionary::Content::makeElement(const ElementRow& row) const {
    auto all = names(row.space, row.tagName);
    all.schemaIndex = tables.text(row.schemaIndex);
    const Types::UniversalLabel label(row.label);
    const auto type = static_cast<Types::Identifiers::Identifier>(row.type);
    if (row.itemType == 0) {
        return std::make_unique<MetaElement>(all, label, row.staticTag, type);
    }
    const auto itemType = static_cast<Types::Identifiers::Identifier>(row.itemType);
    return std::make_unique<MetaCollectionElement>(all, label, row.staticTag, type, itemType);
}

void Dictionary::Content::build() {
    ownedElements.reserve(tables.elements.size());
    elements.reserve(tables.elements.size());
    for (const ElementRow& row : tables.elements) {
        ownedElements.push_back(makeElement(row));
        elements.push_back(ownedElements.back().get());
    }
    ownedSets.reserve(tables.sets.size());
    sets.reserve(tables.sets.size());
    for (const SetRow& row : tables.sets) {
        ownedSets.push_back(std::make_unique<MetaMetadataSet>(
            names(row.space, row.tagName), KLV::Key(row.key), row.concrete != 0));
        sets.push_back(ownedSets.back().get());
    }
    for (std::size_t i = 0; i != tables.sets.size(); ++i) {
        const SetRow& row = tables.sets[i];
        if (row.parent != noRow) {
            ownedSets[i]->inheritFrom(*sets[row.parent]);
        }
        ownedSets[i]->reserve(row.useCount);
        for (std::uint32_t use = row.firstUse; use != row.firstUse + row.useCount; ++use) {
            ownedSets[i]->add(
                *elements[tables.uses[use].element],
                static_cast<AttributeRequiredStatus::Status>(tables.uses[use].status));
        }
    }
}

Dictionary::Dictionary(std::unique_ptr<Content> content) noexcept : content_(std::move(content)) {}

Dictionary::~Dictionary() = default;

Templates::SharedPtr<Dictionary> Dictionary::make(std::unique_ptr<Content> content) {
    return Templates::SharedPtr<Dictionary>(
        Templates::auto_ptr<Dictionary>(new Dictionary(std::move(content))));
}

Templates::SharedPtr<Dictionary> Dictionary::builtIn() {
    static const auto dictionary = make(std::make_unique<Content>(builtInTables()));
    return dictionary;
}

Templates::SharedPtr<Dictionary> Dictionary::registered() {
    static const auto dictionary = make(std::make_unique<Content>(registeredTables()));
    return dictionary;
}

Templates::SharedPtr<Dictionary> Dictionary::extend(const Dictionary& base, const Texts& texts) {
    return make(
        std::make_unique<Content>(load(&base.content_->tables, {texts.data(), texts.size()})));
}

Templates::SharedPtr<Dictionary> Dictionary::fromTexts(const Texts& texts) {
    return make(std::make_unique<Content>(load(nullptr, {texts.data(), texts.size()})));
}

Dictionary::SetIterator Dictionary::metaMetadataSetBegin() const noexcept {
    return content_->sets.data();
}

Dictionary::SetIterator Dictionary::metaMetadataSetEnd() const noexcept {
    return content_->sets.data() + content_->sets.size();
}

Dictionary::ElementIterator Dictionary::metaElementBegin() const noexcept {
    return content_->elements.data();
}

Dictionary::ElementIterator Dictionary::metaElementEnd() const noexcept {
    return content_->elements.data() + content_->elements.size();
}

const MetaMetadataSet* Dictionary::findSet(const KLV::Key& key) const noexcept {
    const TablesView& tables = content_->tables;
    const std::uint32_t row =
        findRow(tables.setsByKey, tables.sets, &SetRow::key, key.forMatching(), LabelMatchLess());
    return row == noRow ? nullptr : content_->sets[row];
}

const MetaElement* Dictionary::findElement(const Types::UniversalLabel& label) const noexcept {
    const TablesView& tables = content_->tables;
    const std::uint32_t row = findRow(tables.elementsByLabel, tables.elements, &ElementRow::label,
                                      label.bytes(), LabelMatchLess());
    return row == noRow ? nullptr : content_->elements[row];
}

const MetaElement* Dictionary::findElementByStaticTag(unsigned short tag) const noexcept {
    const TablesView& tables = content_->tables;
    const std::uint32_t row =
        findRow(tables.elementsByTag, tables.elements, &ElementRow::staticTag, tag, std::less<>());
    return row == noRow ? nullptr : content_->elements[row];
}

const Platform::Attached& Dictionary::documentNames() const noexcept {
    return content_->documentNames;
}

} // namespace Corvid::MetaMetadata
