#pragma once

#include "host/metadata/MetadataSet.h"

namespace Corvid::Metadata {

/// A set whose key the dictionary does not know, but whose properties could be separated and which
/// has an InstanceUID, so that references find it. All its other properties are unknown elements
/// with the tags of their file, so it serialises to the bytes it was read from.
class CORVID_EXPORT DarkParsedGroup : public MetadataSet {
public:
    DarkParsedGroup(PartitionMetadata& partition, const KLV::Key& key);
    ~DarkParsedGroup() override;

    /// Adds the group's InstanceUID as the next of its properties.
    /// @param localTag  the tag that it had in its file, or 0.
    void setInstanceUID(const Types::UUID& uuid, Types::u16 localTag);
};

} // namespace Corvid::Metadata
