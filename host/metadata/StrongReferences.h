#pragma once

#include "host/metadata/MetadataSet.h"

namespace Corvid::Metadata {

/// The strong references of a set, those of its invalid elements included, in stored order. They
/// live as long as their elements keep their values.
CORVID_EXPORT void appendStrongReferences(const MetadataSet& set,
                                          Templates::vector<const Types::Reference*>& references);

} // namespace Corvid::Metadata
