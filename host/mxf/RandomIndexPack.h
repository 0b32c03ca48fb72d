#pragma once

#include "host/dataio/ReadWindow.h"
#include "host/mxf/Warnings.h"

#include <optional>

namespace Corvid::mxf {

/// Where the partitions of a file are, as the pack at the end of the file says (SMPTE ST 377-1).
struct RandomIndexPack {
    struct Entry {
        Types::u32 bodySid = 0; ///< 0 for a partition without essence
        std::uint64_t offset =
            0; ///< of the partition pack, in bytes from the header partition pack
    };
    Templates::vector<Entry> entries; ///< in the order of the file
    std::uint64_t offset = 0;         ///< of the pack's key, in bytes from the front of the file
};

/// The most bytes that a random index pack may have: room for more than a million partitions.
constexpr std::size_t greatestRandomIndexPack = 16 * 1024 * 1024;

/// Reads the random index pack at the end of a file.
/// @return nothing where there is none, and where it contradicts itself, which is a warning.
/// @throws IOError  the bytes can't be read.
CORVID_EXPORT std::optional<RandomIndexPack> findRandomIndexPack(DataIO::ReadWindow& window,
                                                                 WarningSink& warnings);

} // namespace Corvid::mxf
