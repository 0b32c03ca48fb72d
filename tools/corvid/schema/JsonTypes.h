#pragma once

#include "host/dictionary/RegisterEntries.h"
#include "host/types/Identifiers.h"

#include <nlohmann/json.hpp>

/// JSON Schema (2020-12) of the values that XMLBuilder/json/JsonForms.h writes.
namespace Corvid::Tool::JsonTypes {

using Json = nlohmann::ordered_json;

/// The schema that is defined under a name in the document: {"$ref": "#/$defs/NAME"}.
Json named(const std::string& name);

/// Dotted pairs.
Json identifier(std::size_t bytes);
Json orNull(Json schema);
/// An object with these members and no others.
/// @param optional  how many of them, the last ones, may be missing.
Json object(const Json& members, std::size_t optional = 0);
Json listOf(Json items);

/// What values of a type may be. Collections are lists of anything here.
Json describe(Types::Identifiers::Identifier type);

/// What numbers of an enumeration may be, in the range of a type.
Json describe(const MetaMetadata::RegisteredType& enumeration, Types::Identifiers::Identifier type);

/// Whether values of a type are written as a number, or as a number with its name.
bool isNumber(Types::Identifiers::Identifier type);

} // namespace Corvid::Tool::JsonTypes
