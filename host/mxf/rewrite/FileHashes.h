#pragma once

#include "host/mxf/rewrite/RewritableFile.h"

#include <array>
#include <functional>

namespace Corvid::mxf {

/// BLAKE2b with 256 bits, as `b2sum -l 256` has it.
using ContentHash = std::array<Types::u8, 32>;

/// Everything that no edit of header metadata changes, in the order of the file: essence, index
/// tables and whatever else there is beside packs and header metadata.
/// @throws InvalidFormat  a partition's header metadata is not whole, so its end is not certain.
CORVID_EXPORT Templates::vector<FileRange> essenceOf(RewritableFile& file);

/// Hears how many bytes of how many are hashed; may throw to give up.
using HashProgress = std::function<void(std::uint64_t done, std::uint64_t all)>;

/// The hash of ranges, one after the other.
/// @throws IOError  the bytes can't be read.
CORVID_EXPORT ContentHash hashOf(DataIO::RandomAccessSource& source,
                                 const Templates::vector<FileRange>& ranges,
                                 const HashProgress& progress = {});

} // namespace Corvid::mxf
