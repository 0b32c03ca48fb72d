#pragma once

#include "Corvid/Export.h"

namespace Corvid::Types::Identifiers {

/// The number that a dictionary names a value type by.
enum Identifier : unsigned int {
#define CORVID_VALUE_TYPE(Class, Id, Form) Class = Id,
#include "host/types/ValueTypes.def"
};

/// The size of one value of the type in a KLV value, in bytes; 0 where it differs from value to
/// value (text and runs of bytes) and for collections.
CORVID_EXPORT int typeSize(Identifier type) noexcept;

/// The name of the type's class, or null for a number that names no type.
CORVID_EXPORT const char* typeName(Identifier type) noexcept;

} // namespace Corvid::Types::Identifiers
