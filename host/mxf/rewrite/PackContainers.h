#pragma once

#include "host/mxf/Partitions.h"
#include "host/mxf/rewrite/Bytes.h"

#include <optional>

namespace Corvid::mxf {

/// What changes in a file where a partition pack gets another number of essence containers. The
/// fill that follows the pack gets shorter or longer by as much, so that nothing else moves.
/// @return the bytes and their places; nothing where the fill has no room, or a pack that gets
///         shorter leaves 1 to 16 bytes, which no fill can fill.
std::optional<ByteRanges> resizeContainers(DataIO::ReadWindow& window, const Partition& partition,
                                           const Templates::vector<Types::UniversalLabel>& wanted);

} // namespace Corvid::mxf
