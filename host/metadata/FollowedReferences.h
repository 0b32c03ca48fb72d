#pragma once

#include "host/base/Templates.h"
#include "host/types/References.h"

namespace Corvid::Metadata {

class MetadataSet;

/// The references of a set, strong and weak, by which a document finds further sets, in stored
/// order. They live as long as their elements keep their values.
///
/// A document has no place for a property that is listed with the class though it is none of it, or
/// that has no "SchemaIndex", and holds a set of unknown class as bytes: such references lead
/// nowhere. Those of invalid elements do.
void appendFollowedReferences(const MetadataSet& set,
                              Templates::vector<const Types::Reference*>& references);

} // namespace Corvid::Metadata
