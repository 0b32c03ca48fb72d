#pragma once

#include "host/mxf/PartitionPack.h"
#include "host/mxf/Warnings.h"

#include <limits>

namespace Corvid::mxf {

/// A partition and where its pack is.
struct Partition {
    KLV::Triplet triplet; ///< of the pack, in bytes from the front of the file
    PartitionPack pack;
    /// Where the next partition that is known begins; beyond every file where none is. What is
    /// there and after is not this partition's, whatever a length says: partitions that claim each
    /// other's bytes would cost time and memory out of all proportion to the file.
    std::uint64_t end = std::numeric_limits<std::uint64_t>::max();

    std::uint64_t offset() const noexcept { return triplet.offset; }
};

using Partitions = Templates::vector<Partition>;

/// The most bytes that may be before the header partition pack.
constexpr std::size_t greatestRunIn = 65535;

/// Where the offsets in a file's packs count from: at most one of the two is not 0.
struct Origin {
    std::uint64_t runIn = 0;   ///< bytes of the file before that place
    std::uint64_t missing = 0; ///< bytes that are missing between that place and the file's front
};

/// The origin of a file's offsets: its header partition pack. Where the first partition is another
/// one, the front of the file is damaged or missing, and its ThisPartition says how much.
CORVID_EXPORT Origin originOf(const Partition& first) noexcept;

/// Finds the first partition pack, which may come after a run-in.
/// @throws InvalidFormat  the source is not an MXF file.
/// @throws InvalidLength  the source ends inside the pack.
/// @throws IOError        the bytes can't be read.
CORVID_EXPORT Partition findHeaderPartition(DataIO::ReadWindow& window, WarningSink& warnings);

/// Finds all partitions that the file lists: in its random index pack, else along the chain that
/// leads from the footer partition back to the front, else by going from KLV to KLV
/// (PartitionWalk.h has the limit), so its size does not matter. What a file says that is not true
/// is a warning and is left out.
///
/// @param header  what findHeaderPartition() gave.
/// @return the partitions in the order of the file, the header partition first.
/// @throws IOError  the bytes can't be read.
CORVID_EXPORT Partitions findPartitions(DataIO::ReadWindow& window, const Partition& header,
                                        WarningSink& warnings);

} // namespace Corvid::mxf
