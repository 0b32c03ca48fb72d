#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <optional>
#include <vector>

namespace Corvid::Editing {

/// A property that has a value, with what distinguishes it from others in its set.
struct ListedProperty {
    /// What kind of property it is, and its label without version byte, or its tag.
    using Identity = std::array<Types::u8, 17>;

    Identity identity;
    const Metadata::Element* element;
    bool isUnknown; ///< to the dictionary, or at least of a form that it does not know
    std::optional<Types::UniversalLabel> label; ///< that stands for it in the file
};

/// The label that a property of the dictionary has in its file, or gets there where it has no tag
/// yet: the primer may have another version of it than the dictionary.
const Types::UniversalLabel& labelInFile(const Metadata::PartitionDictionary& tags,
                                         const Metadata::Element& element);

/// The properties of a set that have a value, but for its InstanceUID, by identity and, where that
/// is the same, in stored order. Those of a document and those of a file are listed alike: an
/// unknown property with a static tag and a label that is not the dictionary's is known by the tag,
/// others by the label: a value that does not fit its type may come back with another tag.
/// @param tags  of the set's partition.
std::vector<ListedProperty> listProperties(const Metadata::PartitionDictionary& tags,
                                           const Metadata::MetadataSet& set);

} // namespace Corvid::Editing
