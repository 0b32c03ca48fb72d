#pragma once

#include "host/mxf/rewrite/Bytes.h"

namespace Corvid::mxf {

/// Borrowed bytes and their place in a file.
struct Segment {
    std::uint64_t offset = 0; ///< in bytes from the front of the file
    Types::ByteView bytes;

    std::uint64_t end() const noexcept { return offset + bytes.size; }
};

/// Segments in the order of the file that have no byte in common. What is between them is the
/// value of fill, and means nothing.
using Segments = Templates::vector<Segment>;

/// The bytes to be written so that a part of a file holds what it should, as few as can be. Zeros
/// take the place of what was there before and has become fill.
CORVID_EXPORT ByteRanges differences(const Segments& before, const Segments& now);

} // namespace Corvid::mxf
