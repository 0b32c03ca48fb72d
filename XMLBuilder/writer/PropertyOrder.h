#pragma once

#include <vector>

namespace Corvid::Metadata {
class Element;
class MetadataSet;
} // namespace Corvid::Metadata

namespace Corvid::XMLBuilder {

/// Appends the elements of a set in the order in which they are written: first those that do not
/// belong to its class, as they are stored, then those that documents have a place for, by their
/// place.
void listProperties(const Metadata::MetadataSet& set,
                    std::vector<const Metadata::Element*>& properties);

} // namespace Corvid::XMLBuilder
