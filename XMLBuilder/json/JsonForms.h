#pragma once

#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/json/JsonValue.h"

/// The forms that values have in JSON, named as host/types/ValueTypes.def names them for each type.
/// Each writes a value, with an overload for a type that is unlike the others. What JSON Schema
/// says of them is in tools/corvid/schema/JsonTypes.h.
namespace Corvid::XMLBuilder::JsonForms {

/// A whole number; with its name where the registers have one for it.
struct Integer {
    template <class T>
    static void write(JsonWriter& to, const T& value, const JsonValueManner& manner) {
        if (!manner.enumeration) {
            return to.number(+value.value());
        }
        to.beginShortObject();
        to.numberMember("value", +value.value());
        to.memberOrNull("name", MetaMetadata::Registers::memberOf(
                                    *manner.enumeration, static_cast<Types::u64>(value.value())));
        to.end();
    }

    static void write(JsonWriter& to, const Types::Boolean& value, const JsonValueManner&) {
        to.boolean(value.value());
    }
};

/// A version of two numbers, as an object of them.
struct PackedVersion {
    static void write(JsonWriter& to, const Types::VersionType& value, const JsonValueManner&);
};

/// Text; its code units where it is no UTF-16.
struct Text {
    static void write(JsonWriter& to, const Types::UTF16String& value, const JsonValueManner&);
    static void write(JsonWriter& to, const Types::ISO7String& value, const JsonValueManner&);
};

/// The same of one code unit.
struct CodeUnit {
    static void write(JsonWriter& to, const Types::UTF16& value, const JsonValueManner&);
};

/// Dotted hexadecimal; a label with its name.
struct IdentifierText {
    template <class T> static void write(JsonWriter& to, const T& value, const JsonValueManner&) {
        to.identifier(value.bytes().data(), value.bytes().size());
    }

    static void write(JsonWriter& to, const Types::UniversalLabel& value, const JsonValueManner&);
};
using AttributeIdentifier = IdentifierText;

/// Hexadecimal.
struct Bytes {
    static void write(JsonWriter& to, const Types::DataType& value, const JsonValueManner& manner) {
        to.beginShortObject();
        writeHex(to, {value.rawBuffer(), value.byteCount()}, manner.mostBytes);
        to.end();
    }
};

/// An object of the parts.
struct Compound {
    template <class T>
    static void write(JsonWriter& to, const T& value, const JsonValueManner& manner) {
        to.beginShortObject();
        forEachPart<T>([&](const std::string& name, const auto& field) {
            to.key(name);
            if constexpr (isBytes<T, decltype(field.get)>) {
                Bytes::write(to, field.get(value), manner);
            } else {
                to.number(+field.get(value));
            }
        });
        to.end();
    }

    /// ISO 8601 without a zone, of which the value says nothing; a time that no calendar has is an
    /// object of its parts.
    static void write(JsonWriter& to, const Types::Timestamp& value, const JsonValueManner& manner);
    /// A list of the components to the last that is not zeros.
    static void write(JsonWriter& to, const Types::RGBALayout& value, const JsonValueManner&);

    template <class T, class Get>
    static constexpr bool isBytes = std::is_base_of_v<Types::DataType, ContentOf<T, Get>>;

    /// Calls the body with the name of each part, as members have it, and its field.
    template <class T, class Body> static void forEachPart(Body body) {
        std::apply(
            [&](const auto&... field) {
                (body(memberName(Names::localPart(field.name)), field), ...);
            },
            Fields<T>::list);
    }

private:
    /// "Numerator" becomes "numerator".
    static std::string memberName(std::u16string_view part);
};

/// A reference where its target is not known.
struct ReferenceText {
    static void write(JsonWriter& to, const Types::Reference& value, const JsonValueManner&) {
        to.identifier(value.rawBuffer(), value.serializedSize());
    }
};

/// A list.
struct Collection {
    static void write(JsonWriter& to, const Types::Collection& value,
                      const JsonValueManner& manner);
};

} // namespace Corvid::XMLBuilder::JsonForms
