#include "inspection/Glossary.h"

#include "host/base/Text.h"
#include "host/dictionary/DefinitionNames.h"
#include "inspection/LabelText.h"
#include "inspection/NameMatch.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <tuple>

namespace Corvid::Inspection {

namespace {

using namespace MetaMetadata;

std::string qualifiedName(const MetaDefinition& definition) {
    return Platform::toUtf8(definition.attribute("XMLDefaultPrefix")) + ":" + tagName(definition);
}

/// Adds a name that is not there yet.
void addName(std::vector<std::string>& names, std::string_view name) {
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) {
        names.emplace_back(name);
    }
}

KLV::Key keyWithCoding(const Types::UniversalLabel& label, unsigned char coding) {
    auto bytes = label.bytes();
    bytes[5] = coding;
    return KLV::Key(bytes);
}

constexpr unsigned char localSetCoding = 0x53;
constexpr int codingByte = 5;
constexpr int groupByte = 4;

/// The part of a label that is matched: not the version, and of a group's key not the coding.
std::array<Types::u8, 16> matchOf(const Types::UniversalLabel& label) {
    auto bytes = label.withoutVersion();
    if (bytes[groupByte] == 2) {
        bytes[codingByte] = 0;
    }
    return bytes;
}

struct LabelOf {
    using Result = std::optional<Types::UniversalLabel>;

    Result operator()(const MetaMetadataSet* set) const {
        return Types::UniversalLabel(set->key().bytes());
    }
    Result operator()(const MetaElement* element) const { return element->label(); }
    Result operator()(const TypeMember& member) const { return parseLabel(member.member.value()); }
    Result operator()(const RegisteredGroup& group) const {
        auto label = group.label();
        if (const auto coding = parseLocalTag("00" + std::string(group.codings().substr(0, 2)))) {
            label[codingByte] = static_cast<unsigned char>(*coding);
        }
        return label;
    }
    template <class Entry> Result operator()(const Entry& entry) const { return entry.label(); }
};

} // namespace

std::optional<Types::UniversalLabel> labelOf(const Subject& subject) {
    return std::visit(LabelOf(), subject);
}

Glossary::Glossary(const Dictionary& dictionary) {
    addDefinitions(dictionary);
    addRegisters(dictionary);
    addAliases();
}

void Glossary::addDefinitions(const Dictionary& dictionary) {
    std::for_each(dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd(),
                  [this](const MetaMetadataSet* set) {
                      Entry entry{set, {tagName(*set)}, qualifiedName(*set)};
                      if (const auto group = Registers::findGroup(set->key())) {
                          addName(entry.names, group->symbol());
                          addName(entry.names, group->name());
                      }
                      entries_.push_back(std::move(entry));
                  });
    std::for_each(dictionary.metaElementBegin(), dictionary.metaElementEnd(),
                  [this](const MetaElement* element) {
                      Entry entry{element, {tagName(*element)}, qualifiedName(*element)};
                      if (const auto property = Registers::properties().find(element->label())) {
                          addName(entry.names, property->symbol());
                          addName(entry.names, property->name());
                      }
                      entries_.push_back(std::move(entry));
                  });
}

void Glossary::addRegisters(const Dictionary& dictionary) {
    const auto add = [this](const auto& entry) {
        entries_.push_back({entry, {std::string(entry.symbol())}, ""});
        addName(entries_.back().names, entry.name());
    };
    for (const RegisteredType& type : Registers::types()) {
        add(type);
    }
    for (const RegisteredLabel& label : Registers::labels()) {
        // Symbols of labels are long and of no use but to programs.
        entries_.push_back({label, {std::string(label.name())}, ""});
        addName(entries_.back().names, label.symbol());
    }
    for (const RegisteredType& type : Registers::types()) {
        for (const RegisteredMember& member : type.members()) {
            entries_.push_back({TypeMember{type, member}, {std::string(member.symbol())}, ""});
        }
    }
    for (const RegisteredProperty& property : Registers::properties()) {
        if (dictionary.findElement(property.label()) == nullptr) {
            add(property);
        }
    }
    for (const RegisteredGroup& group : Registers::groups()) {
        if (dictionary.findSet(keyWithCoding(group.label(), localSetCoding)) == nullptr) {
            add(group);
        }
    }
}

void Glossary::addAliases() {
    std::map<std::string_view, std::vector<std::string>*> names;
    for (Entry& entry : entries_) {
        names.emplace(entry.qualifiedName, &entry.names);
    }
    for (const RegisteredAlias& alias : Registers::aliases()) {
        if (const auto found = names.find(alias.definition()); found != names.end()) {
            addName(*found->second, alias.name());
        }
    }
}

Glossary::Entries Glossary::findLabel(const Types::UniversalLabel& label) const {
    Entries found;
    const auto wanted = matchOf(label);
    for (const Entry& entry : entries_) {
        const auto own = labelOf(entry.subject);
        // A member that stands for a label is described with the label.
        if (own && matchOf(*own) == wanted &&
            (found.empty() || !std::holds_alternative<TypeMember>(entry.subject))) {
            found.push_back(&entry);
        }
    }
    return found;
}

Glossary::Entries Glossary::findTag(Types::u16 tag) const {
    std::vector<Types::UniversalLabel> labels;
    for (const RegisteredGroup& group : Registers::groups()) {
        for (const RegisteredUse& use : group.uses()) {
            if (use.localTag() == tag) {
                labels.push_back(use.property().label());
            }
        }
    }
    Entries found;
    for (const Entry& entry : entries_) {
        const auto* const element = std::get_if<const MetaElement*>(&entry.subject);
        const auto* const property = std::get_if<RegisteredProperty>(&entry.subject);
        const bool hasTag = element != nullptr ? (*element)->staticLocalTag() == tag
                                               : property != nullptr &&
                                                     std::find(labels.begin(), labels.end(),
                                                               property->label()) != labels.end();
        if (hasTag) {
            found.push_back(&entry);
        }
    }
    return found;
}

Glossary::Found Glossary::find(const std::string& text) const {
    if (const auto label = parseLabel(text)) {
        Entries found = findLabel(*label);
        return {found.empty() ? Match::nothing : Match::label, std::move(found), {}};
    }
    if (const auto tag = parseLocalTag(text)) {
        // Tag 0 is none; it stands for that in the tables.
        if (Entries found = *tag == 0 ? Entries() : findTag(*tag); !found.empty()) {
            return {Match::localTag, std::move(found), {}};
        }
    }
    return findName(text);
}

Glossary::Found Glossary::findName(const std::string& text) const {
    enum Rank { firstName, otherName, foldedName, part, ranks };
    const NameMatch wanted(text);
    Entries byRank[ranks];
    for (const Entry& entry : entries_) {
        int best = ranks;
        for (const std::string& name : entry.names) {
            switch (wanted.compare(name)) {
            case NameMatch::same:
                best = std::min<int>(best, &name == &entry.names.front() ? firstName : otherName);
                break;
            case NameMatch::alike:
                best = std::min<int>(best, foldedName);
                break;
            case NameMatch::part:
                best = std::min<int>(best, part);
                break;
            case NameMatch::none:
                break;
            }
        }
        if (wanted.compare(entry.qualifiedName) == NameMatch::same) {
            best = firstName;
        }
        if (best != ranks) {
            byRank[best].push_back(&entry);
        }
    }
    Found found;
    for (int rank = 0; rank != ranks; ++rank) {
        if (found.entries.empty()) {
            found.match = byRank[rank].empty() ? Match::nothing
                          : rank == part       ? Match::partOfName
                                               : Match::name;
            found.entries = std::move(byRank[rank]);
        } else if (rank != part) {
            found.namesakes.insert(found.namesakes.end(), byRank[rank].begin(), byRank[rank].end());
        }
    }
    return found;
}

std::vector<std::string> Glossary::near(const std::string& text) const {
    if (const auto label = parseLabel(text)) {
        return nearLabels(*label);
    }
    NearNames names(text);
    for (const Entry& entry : entries_) {
        std::for_each(entry.names.begin(), entry.names.end(),
                      [&names](const std::string& name) { names.offer(name); });
    }
    return names.best();
}

std::vector<std::string> Glossary::nearLabels(const Types::UniversalLabel& label) const {
    constexpr std::size_t most = 5;
    // Labels that share less than their kind, the version and some steps have nothing in common.
    constexpr std::ptrdiff_t least = 11;
    const auto wanted = matchOf(label);
    std::vector<std::tuple<std::ptrdiff_t, int, std::string>> found;
    for (const Entry& entry : entries_) {
        const auto own = labelOf(entry.subject);
        if (!own || std::holds_alternative<TypeMember>(entry.subject)) {
            continue;
        }
        const auto match = matchOf(*own);
        const auto [differs, other] = std::mismatch(match.begin(), match.end(), wanted.begin());
        if (differs - match.begin() >= least) {
            found.emplace_back(match.begin() - differs, std::abs(*differs - *other),
                               Platform::toUtf8(own->toString()) + " " + entry.names.front());
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> texts;
    for (std::size_t i = 0; i != std::min(most, found.size()); ++i) {
        texts.push_back(std::get<std::string>(found[i]));
    }
    return texts;
}

} // namespace Corvid::Inspection
