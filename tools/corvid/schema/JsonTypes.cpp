#include "tools/corvid/schema/JsonTypes.h"

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/json/JsonForms.h"

#include <limits>

namespace Corvid::Tool::JsonTypes {

namespace {

using XMLBuilder::As;
using XMLBuilder::JsonWriter;

/// A number in the range of a type; digits where readers would round it.
template <class Number> Json numberOf() {
    using Limits = std::numeric_limits<Number>;
    constexpr Number exact = JsonWriter::greatestExact<Number>();
    if constexpr (exact == Limits::max()) {
        return {{"type", "integer"}, {"minimum", Limits::min()}, {"maximum", Limits::max()}};
    } else {
        constexpr Number least = std::is_signed_v<Number> ? -exact : 0;
        return {{"type", {"integer", "string"}},
                {"minimum", least},
                {"maximum", exact},
                {"pattern", std::is_signed_v<Number> ? "^-?[0-9]{16,19}$" : "^[0-9]{16,20}$"}};
    }
}

Json text() { return {{"anyOf", {{{"type", "string"}}, named("utf16")}}}; }

/// The forms of values, named as those that write them.
namespace Forms {

struct Integer {
    template <class T> static Json describe(As<T>) {
        return numberOf<std::decay_t<decltype(std::declval<const T&>().value())>>();
    }
    static Json describe(As<Types::Boolean>) { return {{"type", "boolean"}}; }
};

struct PackedVersion {
    static Json describe(As<Types::VersionType>) {
        return object({{"major", numberOf<Types::u8>()}, {"minor", numberOf<Types::u8>()}});
    }
};

struct Text {
    template <class T> static Json describe(As<T>) { return text(); }
};
using CodeUnit = Text;

struct IdentifierText {
    template <class T> static Json describe(As<T>) { return identifier(T::fixedSize); }
    static Json describe(As<Types::UniversalLabel>) {
        return object({{"label", identifier(Types::UniversalLabel::fixedSize)},
                       {"name", orNull({{"type", "string"}})}});
    }
};
using AttributeIdentifier = IdentifierText;

struct Bytes {
    template <class T> static Json describe(As<T>) { return named("bytes"); }
};

struct Compound {
    template <class T> static Json describe(As<T>) {
        Json members = Json::object();
        XMLBuilder::JsonForms::Compound::forEachPart<T>(
            [&members](const std::string& name, const auto& field) {
                using Get = decltype(field.get);
                using Content = typename XMLBuilder::StoredContent<T, Get>::Type;
                if constexpr (XMLBuilder::JsonForms::Compound::isBytes<T, Get>) {
                    members[name] = named("bytes");
                } else {
                    members[name] = numberOf<Content>();
                }
            });
        return object(members);
    }
    static Json describe(As<Types::Timestamp> type) {
        return {{"anyOf",
                 {{{"type", "string"},
                   {"pattern", "^[0-9]{4}(-[0-9]{2}){2}T[0-9]{2}(:[0-9]{2}){2}[.][0-9]{3}$"}},
                  describe<Types::Timestamp>(type)}}};
    }
    static Json describe(As<Types::RGBALayout>) {
        Json list =
            listOf(object({{"code", numberOf<Types::u8>()}, {"depth", numberOf<Types::u8>()}}));
        list["maxItems"] = Types::RGBALayout::placesInXml;
        return list;
    }
};

struct ReferenceText {
    static Json describe(As<Types::StrongReference>) {
        return {{"anyOf", {named("reference"), named("set")}}};
    }
    static Json describe(As<Types::WeakReference>) { return named("reference"); }
};

struct Collection {
    template <class T> static Json describe(As<T>) { return {{"type", "array"}}; }
};

} // namespace Forms

} // namespace

Json named(const std::string& name) { return {{"$ref", "#/$defs/" + name}}; }

Json identifier(std::size_t bytes) {
    return {{"type", "string"},
            {"pattern", "^[0-9a-f]{2}([.][0-9a-f]{2}){" + std::to_string(bytes - 1) + "}$"}};
}

Json orNull(Json schema) { return {{"anyOf", {std::move(schema), {{"type", "null"}}}}}; }

Json object(const Json& members, std::size_t optional) {
    Json required = Json::array();
    for (const auto& [name, schema] : members.items()) {
        if (required.size() + optional != members.size()) {
            required.push_back(name);
        }
    }
    return {{"type", "object"},
            {"properties", members},
            {"required", std::move(required)},
            {"additionalProperties", false}};
}

Json listOf(Json items) { return {{"type", "array"}, {"items", std::move(items)}}; }

Json describe(Types::Identifiers::Identifier type) {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return Forms::Form::describe(As<Types::Class>{});
#include "host/types/ValueTypes.def"
    }
    return true;
}

Json describe(const MetaMetadata::RegisteredType& enumeration,
              Types::Identifiers::Identifier type) {
    Json names = Json::array();
    for (const auto& member : enumeration.members()) {
        names.push_back(std::string(member.symbol()));
    }
    names.push_back(nullptr);
    return object({{"value", describe(type)}, {"name", {{"enum", std::move(names)}}}});
}

bool isNumber(Types::Identifiers::Identifier type) {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return std::is_same_v<Forms::Form, Forms::Integer> &&                                      \
               !std::is_same_v<Types::Class, Types::Boolean>;
#include "host/types/ValueTypes.def"
    }
    return false;
}

} // namespace Corvid::Tool::JsonTypes
