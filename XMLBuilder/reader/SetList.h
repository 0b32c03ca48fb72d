#pragma once

#include "host/base/Templates.h"

namespace Corvid::Metadata {
class MetadataSet;
}

namespace Corvid::XMLBuilder {

/// Sets that live in a partition.
using SetList = Templates::list<Metadata::MetadataSet*, Platform::malloc_alloc>;

} // namespace Corvid::XMLBuilder
