#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/PartitionPack.h"
#include "host/mxf/PrimerPack.h"

namespace Corvid::mxf {

/// Header metadata that is ready to be written as KLV (SMPTE ST 377-1): the primer pack, the sets
/// in the order of PartitionMetadata::calculateSerializationOrder(), the dark sets byte for byte.
///
/// The primer pack has the entries that the partition's has already, then those of the tags that
/// the sets use beside them.
class CORVID_EXPORT HeaderMetadataWriter {
public:
    /// Gives every property its local tag and measures everything, so that nothing is refused when
    /// the first byte has been written.
    /// @param metadata  is borrowed and must stay as it is until it has been written.
    /// @throws LimitExceeded  a value has more than 65535 bytes, a set more than greatestSetSize,
    /// or
    ///                        all dynamic tags are in use.
    /// @throws InvalidFormat  the key of a dark set would make it something else in a file: fill, a
    ///                        primer pack, or the end of the header metadata.
    explicit HeaderMetadataWriter(Metadata::PartitionMetadata& metadata);

    /// The bytes of it all, in which no fill is.
    std::uint64_t size() const noexcept { return size_; }

    void write(DataIO::DataSink& sink) const;

private:
    void takeSets();
    void takeDarkSets();

    Metadata::PartitionMetadata& metadata_;
    Templates::vector<const Metadata::MetadataSet*> order_;
    PrimerPack primer_;
    std::uint64_t size_ = 0;
};

/// The pack of a closed and complete header partition without essence, of a file by the rules of
/// SMPTE ST 377-1 (version 1.3).
/// @param preface  has the operational pattern and the essence containers; where it has none, the
///                 pattern is zeros, the containers none. Borrowed.
/// @param kagSize  bytes of which pack and metadata are multiples; 1 for no alignment.
CORVID_EXPORT PartitionPack headerPack(const Metadata::MetadataSet& preface,
                                       Types::u32 kagSize = 1);

/// Writes a header partition without essence: pack, header metadata, and fill so that both end on
/// the KAG.
/// @param pack  its HeaderByteCount is made true, its kind that of a header partition.
CORVID_EXPORT void writeHeaderPartition(PartitionPack pack, const HeaderMetadataWriter& metadata,
                                        DataIO::DataSink& sink);

} // namespace Corvid::mxf
