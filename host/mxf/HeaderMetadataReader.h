#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/Partitions.h"

#include <optional>

namespace Corvid::mxf {

/// The most bytes that a set may have, or any other KLV inside header metadata but fill: it is
/// in memory as a whole. Real sets have some KiB.
constexpr std::uint64_t greatestSetSize = 256 * 1024 * 1024;

/// Where header metadata begins: at the primer pack, or at the first set of a partition that has
/// none.
struct MetadataStart {
    KLV::Triplet triplet;
    bool isPrimer = false;
};

/// Where the sets of header metadata are in their file: their keys, in bytes from its front.
struct SetOffsets {
    Templates::vector<std::uint64_t> sets; ///< in the order of the partition's sets
    Templates::vector<std::uint64_t> dark; ///< in that of its dark sets
};

/// Header metadata as read from a partition.
struct HeaderMetadata {
    Templates::auto_ptr<Metadata::PartitionMetadata> metadata;
    std::size_t partition = 0; ///< its number in the order of the file, from 0
    std::uint64_t begin = 0;   ///< of the primer pack, in bytes from the front of the file
    std::uint64_t end = 0;     ///< after the last set and the fill that follows it, likewise
    bool isWhole = false;      ///< nothing is cut off, and there is a Preface
    /// Where it is cut off, in bytes from the front of the file: all before has been read.
    std::optional<std::uint64_t> cutOffAt;
    SetOffsets offsets;
};

/// Looks after a partition pack for header metadata; fill is passed over and belongs to the pack.
///
/// A HeaderByteCount of 0 proves nothing, as long as the partition is open: what counts is whether
/// a primer pack follows. Without one, a set counts where HeaderByteCount is not 0.
/// @return nothing where there is none.
/// @throws IOError  the bytes can't be read.
CORVID_EXPORT std::optional<MetadataStart> findHeaderMetadata(DataIO::ReadWindow& window,
                                                              const Partition& partition);

/// Reads the header metadata of a partition: sets in the order of the file, fill passed over.
///
/// It ends where HeaderByteCount says. Where that is 0 or not true, which is a warning, it ends at
/// the first key that cannot be metadata: a partition pack, index table, random index pack or
/// essence. In any case it ends where the partition does. Metadata that is cut off is kept as far
/// as its sets are whole, with a warning.
/// @param dictionary  the definitions of sets and properties; shared with the result.
/// @throws LimitExceeded  a set is longer than greatestSetSize.
/// @throws IOError        the bytes can't be read.
CORVID_EXPORT HeaderMetadata readHeaderMetadata(
    DataIO::ReadWindow& window, const Partition& partition, const MetadataStart& start,
    const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary, WarningSink& warnings);

} // namespace Corvid::mxf
