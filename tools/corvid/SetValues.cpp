#include "tools/corvid/SetValues.h"

#include <cstdio>

namespace Corvid::Tool {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;

/// Takes an element apart by its kind.
struct Contents : Metadata::Visitors::ElementVisitor {
    void visit(const Metadata::ReferenceBatchElement& element) override { add(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { add(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            references.push_back(element.value());
        }
    }
    void visit(const Metadata::BatchElement& element) override { collection = element.value(); }
    void visit(const Metadata::ArrayElement& element) override { collection = element.value(); }
    void visit(const Metadata::SimpleElement& element) override { simple = element.value(); }

    void add(const Metadata::ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            references.push_back(&element.at(i));
        }
    }

    std::vector<const Types::Reference*> references;
    const Types::Collection* collection = nullptr;
    const Types::SimpleDataType* simple = nullptr;
};

Contents contentsOf(const Element* element) {
    Contents contents;
    if (element != nullptr) {
        element->accept(contents);
    }
    return contents;
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

const Types::SimpleDataType* simpleValue(const Element* element) {
    return contentsOf(element).simple;
}

std::string text(const MetadataSet& set, const Structural::Property<Types::UTF16String>& property) {
    const auto* const value = find(set, property);
    return value == nullptr ? "" : Platform::toUtf8(value->value());
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
    struct Labels : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Types::UniversalLabel& label) override { found.push_back(label); }
        std::vector<Types::UniversalLabel> found;
    } collected;
    if (const auto* collection = contentsOf(set.find(property.label())).collection) {
        for (Types::u32 i = 0; i != collection->size(); ++i) {
            collection->at(i).accept(collected);
        }
    }
    return collected.found;
}

std::vector<const MetadataSet*> targets(
    const Metadata::PartitionMetadata& metadata, const MetadataSet& set,
    const Structural::Property<Types::StrongReference>& property) {
    std::vector<const MetadataSet*> found;
    for (const auto* reference : contentsOf(set.find(property.label())).references) {
        if (const auto target = metadata.resolve(*reference); !target.empty()) {
            found.push_back(&target.front());
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

std::string className(const MetadataSet& set) {
    return set.metaMetadataSet() == nullptr ? Platform::toUtf8(set.key().toString())
                                            : tagName(*set.metaMetadataSet());
}

std::string tagName(const MetaMetadata::MetaDefinition& definition) {
    const auto* const name = definition.attribute("XMLTagName");
    return name == nullptr ? "" : Platform::toUtf8(name);
}

} // namespace Corvid::Tool
