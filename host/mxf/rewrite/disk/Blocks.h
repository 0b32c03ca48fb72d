#pragma once

#include "host/mxf/rewrite/Rewrite.h"
#include "host/mxf/rewrite/disk/FileSystem.h"

namespace Corvid::mxf {

/// The runs of data of a file from an offset on, in whole blocks where the file system inserts
/// such.
DataRuns dataFrom(const OpenFile& file, std::uint64_t offset);

/// The runs without a hole that is there, moved to where they are without it.
DataRuns withoutHole(const DataRuns& runs, std::uint64_t offset, std::uint64_t size);

/// Where in a file an insertion is that was not finished, or that was being taken out.
///
/// A file system enlarges the file first and moves blocks in steps, so the hole may be anywhere
/// between the place of the insertion and the end.
/// @param before  the runs of data without the insertion, from its place on.
/// @param now     the runs of data as they are, from the same place.
/// @return the offset of the hole; nothing where it is at the end, or there is none.
/// @throws InvalidFormat  the file is not `before` with such a hole.
std::optional<std::uint64_t> findHole(const DataRuns& before, const DataRuns& now,
                                      std::uint64_t size);

} // namespace Corvid::mxf
