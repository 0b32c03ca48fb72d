#pragma once

#include "XMLBuilder/schema/SchemaSet.h"
#include "host/types/Identifiers.h"

namespace Corvid::XMLBuilder {

/// Describes the values: a type for each value type, named like it, in the namespace of the parts
/// of values.
void describeValues(SchemaSet& schemas);

/// The name of a value type in XML Schema.
std::u16string schemaTypeOf(Types::Identifiers::Identifier type, SchemaDocument& document);

/// The same of the type of a property, which depends on the property's name in one case.
std::u16string schemaTypeOf(Types::Identifiers::Identifier type, const std::u16string& localName,
                            SchemaDocument& document);

} // namespace Corvid::XMLBuilder
