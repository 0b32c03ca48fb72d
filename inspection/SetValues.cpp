#include "inspection/SetValues.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/ElementItems.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace Corvid::Inspection {

namespace {

using Metadata::Element;
using Metadata::ElementItems;
using Metadata::MetadataSet;

/// The labels that an element holds, one or many.
std::vector<Types::UniversalLabel> labelsOf(const Element* element) {
    struct Labels : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Types::UniversalLabel& label) override { found.push_back(label); }
        std::vector<Types::UniversalLabel> found;
    } collected;
    const ElementItems items(element);
    for (Types::u32 i = 0; i != items.size(); ++i) {
        items.at(i).accept(collected);
    }
    return collected.found;
}

/// True for an entry of the register of labels, or of a private one, by its first bytes.
bool isRegistryLabel(const Types::UniversalLabel& label) {
    constexpr Types::u8 front[] = {0x06, 0x0e, 0x2b, 0x34, 0x04};
    return std::equal(std::begin(front), std::end(front), label.bytes().begin());
}

/// The first set that an item leads to, or null.
const MetadataSet* targetOf(const Metadata::PartitionMetadata& metadata, const ElementItems& items,
                            Types::u32 index) {
    const auto* const reference = items.reference(index);
    const auto found = reference == nullptr ? Metadata::Targets() : metadata.resolve(*reference);
    return found.empty() ? nullptr : &found.front();
}

const char* releaseName(Types::ProductVersion::ReleaseVersion release) {
    switch (release) {
    case Types::ProductVersion::unknownVersion:
        return "";
    case Types::ProductVersion::releasedVersion:
        return " released";
    case Types::ProductVersion::developmentVersion:
        return " development";
    case Types::ProductVersion::patchedVersion:
        return " patched";
    case Types::ProductVersion::betaVersion:
        return " beta";
    case Types::ProductVersion::privateBuild:
        return " private";
    }
    return "";
}

} // namespace

const Types::Collection* collection(const MetadataSet& set, const Types::UniversalLabel& property) {
    return ElementItems(set.find(property)).values();
}

std::string text(const MetadataSet& set, const Structural::Property<Types::UTF16String>& property) {
    const auto* const value = find(set, property);
    return value == nullptr ? "" : Platform::toUtf8(value->value());
}

std::string text(const MetadataSet& set, const Structural::Property<Types::ISO7String>& property) {
    const auto* const value = find(set, property);
    return value == nullptr ? "" : Platform::toUtf8(Platform::widen(value->value()));
}

std::string text(const MetadataSet& set, const Structural::Property<Types::Timestamp>& property) {
    const auto* const t = find(set, property);
    if (t == nullptr || (t->year() == 0 && t->month() == 0 && t->day() == 0)) {
        return "";
    }
    char line[48];
    std::snprintf(line, sizeof line, "%04d-%02d-%02d %02d:%02d:%02d", t->year(), t->month(),
                  t->day(), t->hour(), t->minute(), t->second());
    return line;
}

std::string text(const MetadataSet& set,
                 const Structural::Property<Types::ProductVersion>& property) {
    const auto* const v = find(set, property);
    if (v == nullptr) {
        return "";
    }
    return std::to_string(v->major()) + "." + std::to_string(v->minor()) + "." +
           std::to_string(v->patch()) + "." + std::to_string(v->build()) +
           releaseName(v->releaseVersion());
}

std::vector<Types::UniversalLabel> labels(
    const MetadataSet& set, const Structural::Property<Types::UniversalLabel>& property) {
    return labelsOf(set.find(property.label()));
}

std::vector<std::pair<std::string, Types::UniversalLabel>> labelValues(const MetadataSet& set) {
    struct Property {
        unsigned long schemaIndex;
        std::string name;
        std::vector<Types::UniversalLabel> labels;
    };
    std::vector<Property> properties;
    for (const auto& [label, element] : set.made()) {
        std::vector<Types::UniversalLabel> found = labelsOf(element);
        found.erase(std::remove_if(found.begin(), found.end(),
                                   [](const auto& each) { return !isRegistryLabel(each); }),
                    found.end());
        const MetaMetadata::MetaElement* const definition =
            found.empty() ? nullptr : element->definition();
        if (definition != nullptr) {
            properties.push_back({schemaIndex(*definition), tagName(*definition), found});
        }
    }
    std::sort(properties.begin(), properties.end(),
              [](const Property& a, const Property& b) { return a.schemaIndex < b.schemaIndex; });
    std::vector<std::pair<std::string, Types::UniversalLabel>> values;
    for (const Property& property : properties) {
        for (const auto& label : property.labels) {
            values.emplace_back(property.name, label);
        }
    }
    return values;
}

std::vector<const MetadataSet*> targets(
    const Metadata::PartitionMetadata& metadata, const MetadataSet& set,
    const Structural::Property<Types::StrongReference>& property) {
    std::vector<const MetadataSet*> found;
    const ElementItems items(set.find(property.label()));
    for (Types::u32 i = 0; i != items.size(); ++i) {
        if (const MetadataSet* const target = targetOf(metadata, items, i)) {
            found.push_back(target);
        }
    }
    return found;
}

const MetadataSet* firstTarget(const Metadata::PartitionMetadata& metadata, const MetadataSet& set,
                               const Structural::Property<Types::StrongReference>& property) {
    const ElementItems items(set.find(property.label()));
    for (Types::u32 i = 0; i != items.size(); ++i) {
        if (const MetadataSet* const target = targetOf(metadata, items, i)) {
            return target;
        }
    }
    return nullptr;
}

std::vector<const MetadataSet*> allTargets(const Metadata::PartitionMetadata& metadata,
                                           const MetadataSet& set) {
    std::vector<const MetadataSet*> found;
    for (const auto& [label, element] : set.made()) {
        const ElementItems items(element);
        for (Types::u32 i = 0; i != items.size() && items.reference(i) != nullptr; ++i) {
            const MetadataSet* const target =
                items.reference(i)->isStrong() ? targetOf(metadata, items, i) : nullptr;
            if (target != nullptr) {
                found.push_back(target);
            }
        }
    }
    return found;
}

bool isA(const MetadataSet& set, Structural::SetClass ancestor) {
    const KLV::Key key = Structural::keyOf(ancestor);
    for (const auto* c = set.metaMetadataSet(); c != nullptr; c = c->parent()) {
        if (KLV::matches(c->key(), key)) {
            return true;
        }
    }
    return false;
}

} // namespace Corvid::Inspection
