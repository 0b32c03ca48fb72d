#pragma once

#include "host/dataio/ReadWindow.h"
#include "host/mxf/HeaderMetadataReader.h"

namespace Corvid::mxf {

/// A run of bytes of a file that is one thing.
struct FileRegion {
    enum class Kind : unsigned char {
        runIn,       ///< before the header partition
        pack,        ///< a partition pack
        metadata,    ///< header metadata, from the primer pack to the fill after it
        index,       ///< index tables
        essence,     ///< everything else of a partition with a body SID
        stream,      ///< the same of a generic stream partition (SMPTE ST 410)
        fill,        ///< a fill item
        randomIndex, ///< the random index pack
        other,       ///< not known
    };

    Kind kind = Kind::other;
    std::uint64_t begin = 0; ///< in bytes from the front of the file
    std::uint64_t end = 0;
    std::optional<std::size_t> partition; ///< its number in the order of the file
};

/// "runIn", "pack" and so on, as the enumerators.
CORVID_EXPORT const char* nameOf(FileRegion::Kind kind) noexcept;

/// Divides a file into regions: in the order of the file, without a gap, none of them empty. What
/// packs say of lengths counts as far as the file and the partition go.
/// @param source      of the file.
/// @param partitions  of the file.
/// @param header      metadata that was read from it: its region is what was read.
/// @throws IOError  the file can't be read.
CORVID_EXPORT Templates::vector<FileRegion> fileRegions(DataIO::RandomAccessSource& source,
                                                        const Partitions& partitions,
                                                        const HeaderMetadata& header);

} // namespace Corvid::mxf
