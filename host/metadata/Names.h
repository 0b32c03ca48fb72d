#pragma once

#include "Corvid/Export.h"

#include <string>

namespace Corvid::Metadata {

class Element;
class MetadataSet;
class PartitionDictionary;

/// What the dictionary calls the class of a set; its key where it does not know it.
CORVID_EXPORT std::string className(const MetadataSet& set);

/// What people call a property: its name in the dictionary, else its label, else its tag.
/// @param tags  of the partition that the element is in.
CORVID_EXPORT std::string propertyName(const PartitionDictionary& tags, const Element& element);

} // namespace Corvid::Metadata
