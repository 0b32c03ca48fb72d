#pragma once

#include "host/mxf/Partitions.h"
#include "host/mxf/RandomIndexPack.h"

namespace Corvid::mxf {

/// Everything in a file that counts bytes from its front: all partition packs and the random index
/// pack. Where bytes are inserted, they must follow.
struct FileMap {
    Partitions partitions; ///< in the order of the file
    std::optional<RandomIndexPack> index;
    std::string doubt; ///< why the map can't be trusted; empty where it can

    /// Finds the partitions and tries what they say of each other.
    ///
    /// The map is trusted where a random index pack or the chain from the footer partition names
    /// every partition and all of them agree, and where header metadata is all that there is.
    /// @throws InvalidFormat  it is no MXF file.
    /// @throws InvalidLength  it ends inside its first partition pack.
    /// @throws IOError        the bytes can't be read.
    static FileMap of(DataIO::ReadWindow& window);

    /// @throws InvalidFormat  the map can't be trusted.
    void requireTrust() const;

    /// Bytes before the place from which offsets count.
    std::uint64_t runIn() const noexcept { return partitions.front().offset(); }
};

} // namespace Corvid::mxf
