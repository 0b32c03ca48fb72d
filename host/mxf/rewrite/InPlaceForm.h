#pragma once

#include "host/dataio/RandomAccessSource.h"
#include "host/mxf/rewrite/Rewrite.h"

#include <optional>

namespace Corvid::mxf {

/// The most bytes at the end of a file that are written anew where bytes are inserted before them.
constexpr std::uint64_t greatestTail = 16 * 1024 * 1024;

/// The same rewrite for a file that is changed where it is.
///
/// The first insertion goes to the last block boundary at or before its place, so that a file
/// system can insert whole blocks; what is between the two is written anew. The others, as in a
/// footer partition, are made by writing the end of the file anew.
/// @param source     the file as it was. Borrowed for the call.
/// @param blockSize  of the file system, in bytes; 0 where it can't insert blocks.
/// @return nothing where this would write more than greatestTail, or the insertion is not one of
///         whole blocks: then a copy of the file must take its place.
/// @throws IOError   the file can't be read.
CORVID_EXPORT std::optional<Rewrite> inPlaceForm(const Rewrite& rewrite,
                                                 DataIO::RandomAccessSource& source,
                                                 std::uint64_t blockSize);

} // namespace Corvid::mxf
