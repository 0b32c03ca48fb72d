#pragma once

#include "XMLBuilder/schema/SchemaSet.h"

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::XMLBuilder {

/// Describes every property of a dictionary: an element, or an attribute where it identifies sets.
void describeProperties(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary);

/// Describes every set of a dictionary: a type, which extends that of its ancestor where the order
/// of the properties lets it, an element, and the link that leads to it.
void describeSets(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::XMLBuilder
