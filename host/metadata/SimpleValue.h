#pragma once

#include "Corvid/Export.h"

namespace Corvid::Types {
class SimpleDataType;
}

namespace Corvid::Metadata {

class Element;

/// The value of an element that holds just one; null for other elements, where there is none, and
/// for null.
CORVID_EXPORT const Types::SimpleDataType* simpleValue(const Element* element);

} // namespace Corvid::Metadata
