#pragma once

#include "Corvid_Editing/Export.h"
#include "host/dataio/RandomAccessSource.h"
#include "host/types/Integers.h"

#include <array>
#include <functional>
#include <vector>

namespace Corvid::mxf {
class RewritableFile;
}

namespace Corvid::Editing {

/// BLAKE2b with 256 bits, as `b2sum -l 256` has it.
using ContentHash = std::array<Types::u8, 32>;

/// Hears how many bytes of how many are hashed; may throw to give up.
using HashProgress = std::function<void(std::uint64_t done, std::uint64_t all)>;

/// The hashes of the header metadata of partitions, fill included.
/// @param file        the clip as it is taken apart.
/// @param clip        the same bytes. Borrowed for the call, like the file.
/// @param partitions  their numbers in the order of the file.
/// @throws InvalidFormat  a partition has no whole header metadata.
/// @throws IOError        the bytes can't be read.
CORVID_EDITING_EXPORT std::vector<ContentHash> headerHashes(
    mxf::RewritableFile& file, DataIO::RandomAccessSource& clip,
    const std::vector<std::size_t>& partitions);

/// The hash of everything that no edit changes: essence, index tables and whatever else there is
/// beside packs and header metadata. Reads the whole file.
/// @throws InvalidFormat  header metadata is not whole, so its end is not certain.
/// @throws IOError        the bytes can't be read.
CORVID_EDITING_EXPORT ContentHash essenceHash(mxf::RewritableFile& file,
                                              DataIO::RandomAccessSource& clip,
                                              const HashProgress& progress = {});

/// Finds what essenceHash() would throw without reading essence.
/// @throws InvalidFormat, IOError  likewise.
CORVID_EDITING_EXPORT void requireCertainEssence(mxf::RewritableFile& file);

} // namespace Corvid::Editing
