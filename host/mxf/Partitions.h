#pragma once

#include "host/mxf/PartitionPack.h"
#include "host/mxf/Warnings.h"

#include <limits>

namespace Corvid::mxf {

/// A partition and where its pack stands.
struct Partition {
    KLV::Triplet triplet; ///< of the pack, in bytes from the front of the file
    PartitionPack pack;
    /// Where the next partition that is known begins; beyond every file where none is. What stands
    /// there and behind is not this partition's, whatever a length says: partitions that claim each
    /// other's bytes would cost time and memory out of all proportion to the file.
    std::uint64_t end = std::numeric_limits<std::uint64_t>::max();

    std::uint64_t offset() const noexcept { return triplet.offset; }
};

using Partitions = Templates::vector<Partition>;

/// The most bytes that may stand before the header partition pack.
constexpr std::size_t greatestRunIn = 65535;

/// Finds the first partition pack, which may stand behind a run-in; all offsets in the file count
/// from it.
/// @throws InvalidFormat  the source is no MXF file.
/// @throws InvalidLength  the source ends inside the pack.
/// @throws IOError        the bytes can't be read.
CORVID_EXPORT Partition findHeaderPartition(DataIO::ReadWindow& window, WarningSink& warnings);

/// Finds all partitions that the file tells of: in its random index pack, else along the chain that
/// leads from the footer partition back to the front, else by going from KLV to KLV
/// (PartitionWalk.h has the limit), so its size does not matter. What a file tells that is not true
/// is a warning and is left out.
///
/// @param header  what findHeaderPartition() gave.
/// @return the partitions in the order of the file, the header partition first.
/// @throws IOError  the bytes can't be read.
CORVID_EXPORT Partitions findPartitions(DataIO::ReadWindow& window, const Partition& header,
                                        WarningSink& warnings);

} // namespace Corvid::mxf
