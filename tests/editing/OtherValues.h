#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <filesystem>
#include <vector>

namespace Corvid::Testing {

/// The samples, and the clip of the project.
std::vector<std::filesystem::path> realClips();

/// Each property that has a name, in the order of the file.
std::vector<Metadata::Element*> elementsOf(const Metadata::MetadataSet& set);
std::vector<Metadata::Element*> elementsOf(const Metadata::PartitionMetadata& metadata);

/// What has no other value of the same length that a test could guess: identifiers of sets and
/// references to them, unknown times, text that is empty or not ASCII. The packs of one file do not
/// repeat the essence containers, so there they can't change.
bool mayStay(const Metadata::Element& element);

/// Tries values of the same length until one fits.
/// @return whether the property has another value.
bool assignAnother(Metadata::PartitionMetadata& metadata, Metadata::Element& element);

} // namespace Corvid::Testing
