#include "tools/corvid/schema/JsonSchema.h"

#include "XMLBuilder/json/JsonWriter.h"
#include "XMLBuilder/json/MetadataJson.h"
#include "XMLBuilder/json/PropertyKeys.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/Dictionary.h"
#include "host/dictionary/RegisterNames.h"
#include "host/types/Types.h"
#include "tools/corvid/schema/JsonTypes.h"

#include <algorithm>
#include <map>

namespace Corvid::Tool {

namespace {

using namespace JsonTypes;
using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;

Json string() { return {{"type", "string"}}; }
Json count() { return {{"type", "integer"}, {"minimum", 0}}; }
Json uuid() { return identifier(Types::UUID::fixedSize); }

/// Makes the definitions by and by, for a class names those that it needs.
class Schema {
public:
    explicit Schema(const MetaMetadata::Dictionary& dictionary) {
        addFrame();
        for (auto set = dictionary.metaMetadataSetBegin(); set != dictionary.metaMetadataSetEnd();
             ++set) {
            addClass(**set);
        }
    }

    Json document() && {
        Json names = Json::array();
        Json choices = Json::array();
        for (auto& [name, properties] : classes_) {
            names.push_back(name);
            choices.push_back(
                {{"if", {{"properties", {{"class", {{"const", name}}}}}}},
                 {"then", {{"properties", {{"properties", named("class." + name)}}}}}});
            definitions_["class." + name] = {{"properties", properties},
                                             {"additionalProperties", false}};
        }
        definitions_["set"]["properties"]["class"] = {{"enum", std::move(names)}};
        definitions_["set"]["allOf"] = std::move(choices);
        Json document = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                         {"title", "MXF header metadata as corvid to-json writes it"}};
        document.update(object({{"format", {{"const", XMLBuilder::jsonFormat}}},
                                {"version", {{"const", XMLBuilder::jsonVersion}}},
                                {"references", {{"enum", {"links", "values"}}}},
                                {"root", orNull(named("reference"))},
                                {"sets", listOf(named("set"))},
                                {"floating", listOf({{"anyOf", {named("set"), named("dark")}}})},
                                {"file", string()},
                                {"partition", count()},
                                {"definitions", {{"type", "object"}}}},
                               3));
        document["$defs"] = definitions_;
        return document;
    }

private:
    void addFrame() {
        definitions_["hex"] = {{"type", "string"}, {"pattern", "^([0-9A-F]{2})*$"}};
        definitions_["utf16"] = object({{"utf16", named("hex")}});
        definitions_["bytes"] = object({{"hex", named("hex")}, {"bytes", count()}}, 1);
        definitions_["reference"] = object(
            {{"ref", uuid()}, {"class", orNull(string())}, {"ambiguous", {{"const", true}}}}, 1);
        definitions_["other"] =
            object({{"why", {{"enum", {"repeated", "misplaced", "unfit", "unknown"}}}},
                    {"property", orNull(string())},
                    {"tag", orNull(identifier(Types::LocalTag::fixedSize))},
                    {"label", orNull(identifier(Types::UniversalLabel::fixedSize))},
                    {"value", true},
                    {"hex", named("hex")},
                    {"bytes", count()}},
                   3);
        definitions_["set"] = object({{"class", string()},
                                      {"id", orNull(uuid())},
                                      {"properties", {{"type", "object"}}},
                                      {"other", listOf(named("other"))},
                                      {"offset", orNull(count())},
                                      {"length", count()},
                                      {"raw", {{"type", "object"}}}},
                                     4);
        definitions_["dark"] = object({{"class", {{"const", nullptr}}},
                                       {"id", orNull(uuid())},
                                       {"key", identifier(KLV::Key::length)},
                                       {"name", orNull(string())},
                                       {"berLength", count()},
                                       {"hex", named("hex")},
                                       {"bytes", count()},
                                       {"offset", orNull(count())},
                                       {"length", count()}},
                                      3);
    }

    void addClass(const MetaMetadataSet& set) {
        // No two classes of a dictionary have one name.
        auto& properties = classes_[MetaMetadata::tagName(set)];
        for (const auto& attribute : set.attributes()) {
            const MetaElement& property = *attribute->facts().definition;
            properties[keys_.keyOf(set, property)] = valueOf(property);
        }
    }

    Json valueOf(const MetaElement& property) {
        if (!property.isCollection()) {
            return itemOf(property, property.dataType());
        }
        const auto& list = static_cast<const MetaMetadata::MetaCollectionElement&>(property);
        return listOf(itemOf(property, list.dataSubType()));
    }

    Json itemOf(const MetaElement& property, Types::Identifiers::Identifier type) {
        const std::string typeName = Types::Identifiers::typeName(type);
        const auto enumeration = isNumber(type)
                                     ? MetaMetadata::Registers::enumerationOf(property.label())
                                     : std::nullopt;
        if (enumeration) {
            const std::string name = typeName + "." + std::string(enumeration->symbol());
            if (definitions_.count(name) == 0) {
                definitions_[name] = describe(*enumeration, type);
            }
            return named(name);
        }
        if (definitions_.count(typeName) == 0) {
            definitions_[typeName] = describe(type);
        }
        return named(typeName);
    }

    XMLBuilder::PropertyKeys keys_;
    std::map<std::string, Json> definitions_;
    std::map<std::string, std::map<std::string, Json>> classes_; ///< their properties
};

/// Objects and lists without others inside are on one line.
void write(const Json& json, XMLBuilder::JsonWriter& to) {
    if (json.is_object()) {
        const bool isShort = std::none_of(json.begin(), json.end(),
                                          [](const Json& each) { return each.is_structured(); });
        isShort ? to.beginShortObject() : to.beginObject();
        for (const auto& [key, member] : json.items()) {
            to.key(key);
            write(member, to);
        }
        to.end();
    } else if (json.is_array()) {
        to.beginArray();
        for (const Json& item : json) {
            write(item, to);
        }
        to.end();
    } else if (json.is_string()) {
        to.text(json.get_ref<const std::string&>());
    } else if (json.is_boolean()) {
        to.boolean(json.get<bool>());
    } else if (json.is_null()) {
        to.null();
    } else {
        to.number(json.get<std::int64_t>());
    }
}

} // namespace

void writeJsonSchema(const MetaMetadata::Dictionary& dictionary, DataIO::DataSink& sink) {
    XMLBuilder::JsonWriter to(XMLUtils::Layout::indented, sink);
    write(Schema(dictionary).document(), to);
    to.flush();
}

} // namespace Corvid::Tool
