#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "editing/supplement/DocumentSupplement.h"

#include <functional>
#include <optional>

namespace Corvid::Editing {

/// A part of a partition that a document holds.
struct DocumentPart {
    const Metadata::MetadataSet* start; ///< the set that it begins with. Borrowed.
    bool structuralOnly;                ///< without sets that are no structural metadata
    std::function<bool(const Metadata::MetadataSet&)> isWritten;
};

/// Finds what of a partition its document has no place for.
/// @param plan  of the document. Borrowed.
/// @param part  what of the partition is in the document; nothing for all.
DocumentSupplement collectSupplement(const XMLBuilder::DocumentPlan& plan,
                                     const std::optional<DocumentPart>& part = {});

} // namespace Corvid::Editing
