#pragma once

#include "host/mxf/Partitions.h"

namespace Corvid::mxf {

/// The most KLVs that are passed in search of partitions. Each costs a small read, wherever in the
/// file it is; some 15 minutes of frame-wrapped essence have as many.
constexpr std::size_t greatestWalk = 100000;

/// What was found by going from KLV to KLV.
struct PartitionWalk {
    /// Why the walk ended.
    enum class End : unsigned char {
        endOfFile,
        limit,  ///< greatestWalk is reached
        noKlv,  ///< no registered key with a length is there
        cutKlv, ///< the file ends inside the KLV
    };

    Partitions partitions; ///< after the header partition, in the order of the file
    End end = End::endOfFile;
    std::uint64_t offset = 0; ///< where it ended, in bytes from the front of the file
};

/// Looks for the partitions of a file that does not say where they are, such as one whose recording
/// was not ended. Goes from the head of a KLV to the next; values are not read, but the fields of
/// partition packs, and header metadata is passed as a whole where HeaderByteCount is true.
/// @throws IOError  the bytes can't be read.
CORVID_EXPORT PartitionWalk walkPartitions(DataIO::ReadWindow& window, const Partition& header);

} // namespace Corvid::mxf
