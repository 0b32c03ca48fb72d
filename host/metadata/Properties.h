#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "host/types/Factories.h"

#include <string_view>

/// Sets and properties by the names that the dictionary gives them, such as "TimelineTrack" and
/// "TrackName", letter by letter. Where several have a name, the prefix of one is in front of it:
/// "s377m:TrackName".
///
/// What is found belongs to the partition and lives as long as it is not changed or removed.
namespace Corvid::Metadata {

/// The elements of a set that have a value, in the order of the file: those of its class, of other
/// classes and unknown ones.
CORVID_EXPORT Templates::vector<Element*> elementsOf(const MetadataSet& set);

/// The element of a property that has a value; null where none has.
CORVID_EXPORT Element* findElement(const MetadataSet& set, std::string_view name);

/// The element of a property, with a value or without.
/// @throws InvalidArgument  the class of the set has no property of that name, or several.
CORVID_EXPORT Element& getElement(MetadataSet& set, std::string_view name);

/// The sets of a class and of the classes that inherit from it, in the partition's order.
CORVID_EXPORT PartitionMetadata::Sets findSets(const PartitionMetadata& partition,
                                               std::string_view className);

/// Makes a set as PartitionMetadata::createMetadataSet() does.
/// @throws InvalidArgument  the dictionary has no class of that name, or several.
CORVID_EXPORT MetadataSet& createSet(PartitionMetadata& partition, std::string_view className);

/// The sets that a property refers to, be it one or many, in stored order; references that lead
/// nowhere are left out.
CORVID_EXPORT PartitionMetadata::Sets findTargets(const PartitionMetadata& partition,
                                                  const MetadataSet& set, std::string_view name);

/// Makes a property refer to a set: the one reference that it holds, or one more of many.
/// @throws InvalidArgument  as getElement(), or the property holds no references.
CORVID_EXPORT void addTarget(MetadataSet& set, std::string_view name, const MetadataSet& target);

/// What the templates below share.
namespace Typed {

/// The type of a class of values.
template <class Value> struct TypeOf;
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    template <> struct TypeOf<Types::Class> {                                                      \
        static constexpr auto value = Types::Identifiers::Class;                                   \
    };
#include "host/types/ValueTypes.def"

/// What the templates know at compile time.
using Type = Types::Identifiers::Identifier;
/// Borrowed values of one type.
using Values = Templates::vector<const Types::SimpleDataType*>;

/// @{ The functions that the templates of the same names call.
CORVID_EXPORT const Types::SimpleDataType* find(const MetadataSet& set, std::string_view name,
                                                Type type);
CORVID_EXPORT void set(MetadataSet& set, std::string_view name, Type type,
                       const Types::SimpleDataType& value);
CORVID_EXPORT Values findItems(const MetadataSet& set, std::string_view name, Type type);
CORVID_EXPORT void setItems(MetadataSet& set, std::string_view name, Type type,
                            const Values& items);
/// @}

} // namespace Typed

/// The value of a property: findValue<Types::UTF16String>(track, "TrackName").
/// @return null where the set has none.
/// @throws InvalidArgument  the property is of another type, or a list.
template <class Value> const Value* findValue(const MetadataSet& set, std::string_view name) {
    return static_cast<const Value*>(Typed::find(set, name, Typed::TypeOf<Value>::value));
}

/// Gives a property a value, which is copied. References have addTarget().
/// @throws InvalidArgument  as getElement(), or the property is of another type.
template <class Value> void setValue(MetadataSet& set, std::string_view name, const Value& value) {
    Typed::set(set, name, Typed::TypeOf<Value>::value, value);
}

/// The items of a property that is a list; empty where the set has none.
/// @throws InvalidArgument  the property is no list, or one of another type.
template <class Value>
Templates::vector<Value> findItems(const MetadataSet& set, std::string_view name) {
    Templates::vector<Value> items;
    for (const auto* const item : Typed::findItems(set, name, Typed::TypeOf<Value>::value)) {
        items.push_back(static_cast<const Value&>(*item));
    }
    return items;
}

/// Gives a property that is a list its items, which are copied; none make an empty list.
/// @throws InvalidArgument  as getElement(), or the property is no list of that type.
/// @throws InvalidLength    the items differ in size.
template <class Value>
void setItems(MetadataSet& set, std::string_view name, const Templates::vector<Value>& items) {
    Typed::Values values;
    for (const Value& item : items) {
        values.push_back(&item);
    }
    Typed::setItems(set, name, Typed::TypeOf<Value>::value, values);
}

} // namespace Corvid::Metadata
