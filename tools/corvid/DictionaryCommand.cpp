#include "tools/corvid/DictionaryCommand.h"

#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "inspection/DefinitionUses.h"
#include "inspection/LabelText.h"
#include "inspection/NameMatch.h"
#include "inspection/RegisteredName.h"
#include "tools/corvid/dictionary/Explanation.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Lines.h"
#include "tools/corvid/terminal/Printable.h"
#include "tools/corvid/terminal/Style.h"
#include "tools/corvid/terminal/Table.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Inspection::branchesOf;
using Inspection::DefinitionUses;
using Inspection::Glossary;
using Inspection::parseLabel;
using Inspection::parseLocalTag;
using Inspection::Subject;
using Inspection::TypeMember;
using Platform::folded;

using Json = nlohmann::ordered_json;

Json matchName(Glossary::Match match) {
    switch (match) {
    case Glossary::Match::nothing:
        return nullptr;
    case Glossary::Match::label:
        return "label";
    case Glossary::Match::localTag:
        return "local tag";
    case Glossary::Match::name:
        return "name";
    case Glossary::Match::partOfName:
        return "part of name";
    }
    return nullptr;
}

struct KindName {
    const char* operator()(const MetaMetadata::MetaMetadataSet*) const { return "set"; }
    const char* operator()(const MetaMetadata::MetaElement*) const { return "property"; }
    const char* operator()(const MetaMetadata::RegisteredProperty&) const { return "property"; }
    const char* operator()(const MetaMetadata::RegisteredType&) const { return "type"; }
    const char* operator()(const MetaMetadata::RegisteredLabel&) const { return "label"; }
    const char* operator()(const TypeMember&) const { return "member"; }
    const char* operator()(const MetaMetadata::RegisteredGroup&) const { return "group"; }
};

/// What distinguishes entries of one name: the label, or the type of a member.
std::string detail(const Subject& subject) {
    if (const auto* const member = std::get_if<TypeMember>(&subject)) {
        return std::string(member->type.symbol()) + " " + std::string(member->member.value());
    }
    const auto label = labelOf(subject);
    return label ? Platform::toUtf8(label->toString()) : "";
}

/// Not those that only differ from the first in blanks and case, nor the symbols of labels.
std::string otherNames(const Glossary::Entry& entry) {
    std::vector<std::string> others;
    std::copy_if(entry.names.begin() + 1, entry.names.end(), std::back_inserter(others),
                 [&entry](const std::string& name) {
                     return !std::holds_alternative<MetaMetadata::RegisteredLabel>(entry.subject) &&
                            folded(name) != folded(entry.names.front());
                 });
    return joined(others, ", ");
}

std::string listText(const Glossary::Entries& entries, bool colours) {
    const Style style(colours);
    Table table(0);
    table.add({"Kind", "Label, or type and value", "Name", "Other names"});
    for (const Glossary::Entry* entry : entries) {
        table.add({std::visit(KindName(), entry->subject), detail(entry->subject),
                   entry->names.front(), otherNames(*entry)});
    }
    return table.toString(style.heading, style.end);
}

/// Why nothing was found, on one line.
std::string refusal(const std::string& wanted, const std::vector<std::string>& near) {
    std::string text =
        "neither the dictionary nor the registers have a label, local tag or name '" +
        printable(wanted) + "'";
    if (const auto label = parseLabel(wanted)) {
        const auto branches = branchesOf(*label);
        text += branches.empty() ? "" : "; it would be in: " + joined(branches, " > ");
    } else if (const auto tag = parseLocalTag(wanted); tag && *tag >= 0x8000) {
        text += "; tags from 80.00 on have a meaning of their own in each file, given by its "
                "primer pack";
    }
    return near.empty() ? text : text + "; near: " + joined(near, ", ");
}

std::string toText(const DictionaryOptions& options, const Glossary::Found& found,
                   const DefinitionUses& uses) {
    if (found.entries.size() != 1) {
        Glossary::Entries all = found.entries;
        all.insert(all.end(), found.namesakes.begin(), found.namesakes.end());
        return listText(all, options.colours);
    }
    const std::string text =
        explanationText(explain(*found.entries.front(), uses), options.colours);
    return found.namesakes.empty()
               ? text
               : text + "\nOthers of that name\n" + listText(found.namesakes, options.colours);
}

std::string toJson(const DictionaryOptions& options, const Glossary::Found& found,
                   const std::vector<std::string>& near, const DefinitionUses& uses) {
    Json json = {{"query", options.wanted},
                 {"match", matchName(found.match)},
                 {"entries", Json::array()},
                 {"namesakes", Json::array()},
                 {"near", near}};
    for (const Glossary::Entry* entry : found.entries) {
        json["entries"].push_back(explain(*entry, uses));
    }
    for (const Glossary::Entry* entry : found.namesakes) {
        json["namesakes"].push_back({{"kind", std::visit(KindName(), entry->subject)},
                                     {"name", entry->names.front()},
                                     {"is", detail(entry->subject)}});
    }
    return jsonText(json) + "\n";
}

} // namespace

void dictionary(const DictionaryOptions& options) {
    protectInputs(inputsOf({}, options.dictionaries));
    const auto definitions = loadDictionary(options.dictionaries);
    const Glossary glossary(*definitions);
    const DefinitionUses uses(*definitions);
    const Glossary::Found found = glossary.find(options.wanted);
    const std::vector<std::string> near =
        found.entries.empty() ? glossary.near(options.wanted) : std::vector<std::string>();
    if (options.json) {
        printText(toJson(options, found, near, uses));
    } else if (!found.entries.empty()) {
        printText(toText(options, found, uses));
    }
    if (found.entries.empty()) {
        throw Exceptions::InvalidArgument(refusal(options.wanted, near), CORVID_HERE);
    }
}

} // namespace Corvid::Tool
