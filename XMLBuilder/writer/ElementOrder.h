#pragma once

#include <cstdint>
#include <vector>

namespace Corvid::Metadata {
class Element;
class MetadataSet;
} // namespace Corvid::Metadata

namespace Corvid::XMLBuilder {

/// An element of a set that has a place in documents.
struct PlacedElement {
    const Metadata::Element* element;
    std::uint32_t order; ///< the "SchemaIndex" of the property; 0 for an invalid element
};

/// Appends the elements of a set in the order in which a document has them: the invalid ones as
/// they are stored, then those of the class by "SchemaIndex". One without has no place.
void appendInDocumentOrder(const Metadata::MetadataSet& set, std::vector<PlacedElement>& elements);

} // namespace Corvid::XMLBuilder
