#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <string>
#include <vector>

namespace Corvid::Editing {

/// The texts of an element's items, or of its one value, each as valueText() has it; nothing where
/// it has no value.
std::vector<std::string> textsOf(const Metadata::Element& element);

/// Gives an element another value, read as strictly as that of a document. A value that it has
/// already keeps its bytes. Text has a terminator where it had one.
///
/// @param metadata  of the element, which names a property of the dictionary. A reference is to
///                  lead to a set of it, unless the element holds it already.
/// @param texts     UTF-8, one for each item of a list, else one.
/// @return false where the element has the value already.
/// @throws InvalidFormat  a text has not the form that it must have, or is a time that no calendar
///                        has; the message has what is expected. Or it is an InstanceUID, by which
///                        sets are known.
/// @throws LimitExceeded  the value has more bytes than a property can hold.
bool assignValue(Metadata::PartitionMetadata& metadata, Metadata::Element& element,
                 const std::vector<std::string>& texts);

} // namespace Corvid::Editing
