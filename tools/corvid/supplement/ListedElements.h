#pragma once

#include "host/metadata/MetadataSet.h"

namespace Corvid::Tool {

/// Calls visit for every element of a set that has a value: first those of the set's class, but for
/// the InstanceUID, then the others in stored order. So a document lists them, too.
template <class Visit> void forEachElement(const Metadata::MetadataSet& set, Visit visit) {
    const auto instanceUID =
        Metadata::Structural::StructuralMetadataULs::instanceUID().withoutVersion();
    for (const auto& [label, element] : set.made()) {
        if (!element->isSkipped() && label.withoutVersion() != instanceUID) {
            visit(*element);
        }
    }
    for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element) {
        if (!(*element)->isSkipped()) {
            visit(**element);
        }
    }
}

} // namespace Corvid::Tool
