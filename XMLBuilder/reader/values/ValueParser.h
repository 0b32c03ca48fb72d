#pragma once

#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "host/types/Identifiers.h"

namespace Corvid::XMLBuilder {

/// Makes a value of its node, the way ToXMLBaseTypeVisitor writes it.
///
/// Numbers are taken leniently, as a stream reads them, and keep their low bits; nothing is checked
/// against a calendar.
///
/// @param node  an element, or an attribute.
/// @return null for an element without any child, which carries no value, and for a type that is
///         not read from XML; with EmptyParts::values only where no value of the type is empty.
/// @throws InvalidFormat  bytes are not in hexadecimal, an identifier is malformed, or a part of a
///                        value that must be there is missing.
/// @throws LimitExceeded  the value has more bytes than a property of a local set can hold
///                        (SMPTE ST 377-1).
ParsedValue parseValue(Reading& reading, Types::Identifiers::Identifier type,
                       const DocumentNode& node, EmptyParts empty = EmptyParts::missing);

} // namespace Corvid::XMLBuilder
