#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "host/metadata/SimpleValue.h"
#include "host/types/Collections.h"
#include "inspection/StructuralLabels.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Inspection {

/// The value of a property; null where the set has none, or one of another type.
template <class Value>
const Value* find(const Metadata::MetadataSet& set, const Structural::Property<Value>& property) {
    struct Typed : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Value& value) override { found = &value; }
        const Value* found = nullptr;
    } typed;
    if (const auto* value = Metadata::simpleValue(set.find(property.label()))) {
        value->accept(typed);
    }
    return typed.found;
}

/// A number; nothing where there is none.
template <class Value>
auto number(const Metadata::MetadataSet& set, const Structural::Property<Value>& property)
    -> std::optional<decltype(std::declval<Value>().value())> {
    const Value* const value = find(set, property);
    return value == nullptr ? std::nullopt : std::make_optional(value->value());
}

/// The values of a property that is a collection; null where the set has none.
const Types::Collection* collection(const Metadata::MetadataSet& set,
                                    const Types::UniversalLabel& property);

/// Text as UTF-8; empty where there is none.
std::string text(const Metadata::MetadataSet& set,
                 const Structural::Property<Types::UTF16String>& property);

std::string text(const Metadata::MetadataSet& set,
                 const Structural::Property<Types::ISO7String>& property);

/// "2024-02-29 12:00:00"; empty where there is none, or an unknown time.
std::string text(const Metadata::MetadataSet& set,
                 const Structural::Property<Types::Timestamp>& property);

/// "1.2.3.4" with the kind of release; empty where there is none.
std::string text(const Metadata::MetadataSet& set,
                 const Structural::Property<Types::ProductVersion>& property);

/// The labels of a collection; empty where there is none.
std::vector<Types::UniversalLabel> labels(
    const Metadata::MetadataSet& set, const Structural::Property<Types::UniversalLabel>& property);

/// The labels (SMPTE ST 400) among the values of a set, each with what the dictionary calls its
/// property, in the order that properties have in a document.
std::vector<std::pair<std::string, Types::UniversalLabel>> labelValues(
    const Metadata::MetadataSet& set);

/// The sets that a property refers to, one or many; those that are not there are left out.
std::vector<const Metadata::MetadataSet*> targets(
    const Metadata::PartitionMetadata& metadata, const Metadata::MetadataSet& set,
    const Structural::Property<Types::StrongReference>& property);

/// The first of them, or null.
const Metadata::MetadataSet* firstTarget(
    const Metadata::PartitionMetadata& metadata, const Metadata::MetadataSet& set,
    const Structural::Property<Types::StrongReference>& property);

/// The sets that the properties of a set refer to strongly, those of its class only.
std::vector<const Metadata::MetadataSet*> allTargets(const Metadata::PartitionMetadata& metadata,
                                                     const Metadata::MetadataSet& set);

/// The values of a collection that are of the class Value; empty where there is none.
template <class Value>
std::vector<Value> items(const Metadata::MetadataSet& set,
                         const Structural::Property<Value>& property) {
    struct Typed : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Value& value) override { found.push_back(value); }
        std::vector<Value> found;
    } typed;
    if (const auto* values = collection(set, property.label())) {
        for (Types::u32 i = 0; i != values->size(); ++i) {
            values->at(i).accept(typed);
        }
    }
    return typed.found;
}

/// True for a set of that class, or of one that inherits from it.
bool isA(const Metadata::MetadataSet& set, Structural::SetClass ancestor);

} // namespace Corvid::Inspection
