#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Editing {

/// A set that the dictionary does not know, by its bytes.
struct ListedDarkSet {
    KLV::Key key;
    int berLength; ///< octets of its length field
    std::string value;
    std::optional<Types::UUID> instanceUID; ///< of one whose properties can be separated
};

/// All of them: those whose properties can be separated in the order of the sets, then the others.
/// @param partition  its primer pack gets an entry where a property has a label that it lacks.
std::vector<ListedDarkSet> listDarkSets(Metadata::PartitionMetadata& partition);

} // namespace Corvid::Editing
