#pragma once

#include "host/metadata/MetadataSet.h"

namespace Corvid::Editing {

/// Calls visit for every element of a set that has a value: first those of the set's class, then
/// the others in stored order. So a document lists them, too.
template <class Visit> void forEachElement(const Metadata::MetadataSet& set, Visit visit) {
    for (const auto& entry : set.made()) {
        if (!entry.second->isSkipped()) {
            visit(*entry.second);
        }
    }
    for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element) {
        if (!(*element)->isSkipped()) {
            visit(**element);
        }
    }
}

} // namespace Corvid::Editing
