#pragma once

#include "host/mxf/rewrite/Bytes.h"

namespace Corvid::mxf {

/// The bytes of the smallest fill item that there can be: a key and a length of one octet. Fewer
/// bytes can't be filled.
constexpr std::uint64_t leastFill = 17;

/// A place in header metadata where fill may be, and what comes before it.
struct FillSlot {
    std::uint64_t content = 0; ///< bytes between the slot before and this one
    /// Where what comes after the slot has its place, if it keeps it, in bytes from the front of
    /// the metadata.
    std::uint64_t end = 0;
};

/// How long the fill items are.
struct FillRoom {
    Templates::vector<std::uint64_t> sizes; ///< of each slot, 0 for no fill; they fill all room
    std::uint64_t missing = 0;              ///< the bytes by which the content is too long
    std::uint64_t gap = 0; ///< 1 to 16 bytes that are left and that no fill can fill
};

/// Shares the room that content leaves among fill items. What need not move keeps its place, and
/// bytes that are too few for a fill item go to another one.
/// @param slots  the last one is at the end of the metadata, and its end is the size of all.
CORVID_EXPORT FillRoom giveRoom(const Templates::vector<FillSlot>& slots);

/// The octets of the length of a fill item.
/// @param size    of the whole item, leastFill at least.
/// @param wanted  where they can be had.
CORVID_EXPORT unsigned char fillOctets(std::uint64_t size, unsigned char wanted) noexcept;

} // namespace Corvid::mxf
