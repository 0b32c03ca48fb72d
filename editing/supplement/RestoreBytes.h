#pragma once

#include "editing/supplement/DocumentSupplement.h"
#include "host/metadata/MetadataSet.h"

namespace Corvid::Editing {

/// Gives an element its bytes, where the document holds what they look like in it.
/// @param element  as it was read from the document.
/// @return false where it holds something else; the element is as it was.
bool restoreBytes(Metadata::Element& element, const std::string& bytes);

/// Adds the element of a property that a document does not hold at all. One that is not the first
/// of its label goes after the invalid elements.
/// @return it; null where the document would hold it, or the bytes can't be its value.
Metadata::Element* insertBytes(Metadata::MetadataSet& set, const DocumentSupplement::Bytes& bytes,
                               const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Editing
