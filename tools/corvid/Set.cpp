#include "tools/corvid/Set.h"

#include "editing/values/AssignValue.h"
#include "editing/values/ValueText.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/Names.h"
#include "inspection/query/Query.h"
#include "tools/corvid/input/Paths.h"
#include "tools/corvid/terminal/UsageError.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

namespace Corvid::Tool {

namespace {

using Inspection::Assignment;
using Inspection::Path;
using Inspection::Place;
using Inspection::Places;
using Metadata::Element;
using Metadata::PartitionMetadata;
using Strings = std::vector<std::string>;

[[noreturn]] void refuse(const std::string& what) {
    throw Exceptions::InvalidFormat(what, CORVID_HERE);
}

/// The element of a property that a set lacks but its class has; null where it does not.
Element* addElement(Metadata::MetadataSet& set, const MetaMetadata::MetaElement& property) {
    if (set.metaMetadataSet() == nullptr) {
        return nullptr;
    }
    if (Element* const element = set.find(property.label())) {
        return element;
    }
    const auto* const attribute = set.metaMetadataSet()->find(property.label());
    return attribute == nullptr ? nullptr : &set.createElement(property.label(), *attribute);
}

/// The places that the sets have which a path leads to, with the properties that they lack.
void addMissing(const Path& path, Inspection::Query& query, Places& places) {
    std::set<const Metadata::MetadataSet*> have;
    for (const Place& place : places) {
        have.insert(place.set);
    }
    Path front = path;
    front.steps.pop_back();
    for (Metadata::MetadataSet* const set : query.setsAt(query.find(front))) {
        if (have.count(set) != 0) {
            continue;
        }
        for (const auto* const property : path.steps.back().properties) {
            if (Element* const element = addElement(*set, *property)) {
                places.push_back({set, element, {}});
                break;
            }
        }
    }
}

Places targetsOf(const Assignment& assignment, const PartitionMetadata& metadata) {
    Inspection::Query query(metadata, Editing::valueText);
    const Path& path = assignment.path;
    Places places = query.find(path);
    places.erase(std::remove_if(places.begin(), places.end(),
                                [](const Place& place) { return place.element == nullptr; }),
                 places.end());
    const bool namesSet = path.steps.size() > 1 && path.steps.back().conditions.empty();
    if (namesSet && assignment.kind != Assignment::Kind::remove) {
        addMissing(path, query, places);
    }
    return places;
}

std::string describe(const Place& place) {
    std::string text = Metadata::className(*place.set);
    if (place.set->hasInstanceUID()) {
        text += " " + Platform::toUtf8(place.set->instanceUID().toString());
    }
    return text;
}

void requireOne(const Places& places) {
    constexpr std::size_t listed = 3;
    if (places.size() < 2) {
        return;
    }
    std::string list;
    for (std::size_t i = 0; i != std::min(listed, places.size()); ++i) {
        list += (i == 0 ? "" : ", ") + describe(places[i]);
    }
    if (places.size() > listed) {
        list += " and " + std::to_string(places.size() - listed) + " more";
    }
    refuse("leads to " + std::to_string(places.size()) + " values, in " + list +
           "; --all changes all of them");
}

/// The items that a text has for a list: one on a line, as get prints them.
Strings linesOf(const std::string& text) {
    Strings lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool isList(const Place& place) { return place.element->definition()->isCollection(); }

void removeProperty(const Place& place) {
    struct Remove : Metadata::Visitors::NonConstElementVisitor {
        void visit(Metadata::ReferenceBatchElement&) override { refuseList(); }
        void visit(Metadata::ReferenceArrayElement&) override { refuseList(); }
        void visit(Metadata::ReferenceElement& element) override {
            element.setUnverifiedReference({});
        }
        void visit(Metadata::BatchElement& element) override { element.set({}); }
        void visit(Metadata::ArrayElement& element) override { element.set({}); }
        void visit(Metadata::SimpleElement& element) override { element.set({}); }
        static void refuseList() { refuse("a list of references stays, its items can be removed"); }
    } remove;
    if (place.element->metaAttribute()->facts().isRequired) {
        refuse("the property is required in a set of its class");
    }
    place.element->accept(remove);
}

/// The items of a list, or the value, after the change; nothing where the property goes.
std::optional<Strings> changed(const Assignment& assignment, const Place& place) {
    const std::string& value = assignment.value;
    Strings texts = Editing::textsOf(*place.element);
    const std::size_t item = place.item.value_or(0);
    switch (assignment.kind) {
    case Assignment::Kind::replace:
        if (isList(place) && !place.item) {
            return linesOf(value);
        }
        texts.resize(std::max(texts.size(), item + 1));
        texts[item] = value;
        return texts;
    case Assignment::Kind::append:
        if (!isList(place) || place.item) {
            refuse("is no list, so nothing can be appended");
        }
        for (const std::string& line : linesOf(value)) {
            texts.push_back(line);
        }
        return texts;
    case Assignment::Kind::remove:
        break;
    }
    if (value.empty() && (!isList(place) || !place.item)) {
        return std::nullopt;
    }
    if (isList(place) && !place.item) {
        for (const std::string& line : linesOf(value)) {
            const auto kept = std::remove(texts.begin(), texts.end(), line);
            if (kept == texts.end()) {
                refuse("has no item '" + line + "' that could be removed");
            }
            texts.erase(kept, texts.end());
        }
        return texts;
    }
    if (!value.empty() && texts.at(item) != value) {
        refuse("is '" + texts.at(item) + "' and not '" + value + "', so it is not removed");
    }
    if (!isList(place)) {
        return std::nullopt;
    }
    texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(item));
    return texts;
}

void change(const Assignment& assignment, PartitionMetadata& metadata, bool all) {
    const auto& last = assignment.path.steps.back();
    if (last.kind != Inspection::Step::Kind::named || last.properties.empty()) {
        throw UsageError{"'" + assignment.path.text + "' does not end with the name of a property"};
    }
    try {
        const Places places = targetsOf(assignment, metadata);
        if (places.empty()) {
            refuse("leads to no property of a set");
        }
        if (!all) {
            requireOne(places);
        }
        // The last items first: those in front of an item that goes keep their places.
        for (auto place = places.rbegin(); place != places.rend(); ++place) {
            if (const auto texts = changed(assignment, *place)) {
                Editing::assignValue(metadata, *place->element, *texts);
            } else {
                removeProperty(*place);
            }
        }
    } catch (const Exceptions::InvalidFormat& error) {
        refuse(assignment.path.text + ": " + Platform::toUtf8(error.message()));
    }
}

} // namespace

void set(const SetOptions& options, Messages& messages) {
    SetOptions edit = options;
    edit.inPlace = options.inPlace || options.target.newFile.empty();
    const auto read = [&](const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary) {
        const auto assignments = parseAssignments(options.assignments, *dictionary);
        return [assignments, all = options.all](Editing::ClipEditor& editor,
                                                const Editing::EditOptions& how) {
            const auto metadata = editor.readMetadata();
            for (const Assignment& assignment : assignments) {
                change(assignment, *metadata, all);
            }
            return editor.plan(*metadata, how);
        };
    };
    const nlohmann::ordered_json origin{{"assignments", options.assignments}};
    editClip(edit, {{}, origin, read}, messages);
}

} // namespace Corvid::Tool
