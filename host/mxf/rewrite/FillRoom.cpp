#include "host/mxf/rewrite/FillRoom.h"

#include "host/klv/BerOutput.h"
#include "host/klv/Key.h"

#include <algorithm>

namespace Corvid::mxf {

namespace {

/// Gives each slot the fill after which the next content is where it was. What a slot can't take is
/// left to the next.
/// @return how long it all is.
std::uint64_t keepPlaces(const Templates::vector<FillSlot>& slots,
                         Templates::vector<std::uint64_t>& sizes) {
    std::uint64_t position = 0;
    for (std::size_t i = 0; i != slots.size(); ++i) {
        position += slots[i].content;
        if (slots[i].end >= position + leastFill) {
            sizes[i] = slots[i].end - position;
            position = slots[i].end;
        }
    }
    return position;
}

/// Takes bytes from the fill items, the last ones first.
/// @return whether all could be taken.
bool shrink(Templates::vector<std::uint64_t>& sizes, std::uint64_t bytes) {
    for (std::size_t i = sizes.size(); i-- != 0 && bytes != 0;) {
        std::uint64_t taken = std::min(bytes, sizes[i]);
        if (const std::uint64_t left = sizes[i] - taken; left != 0 && left < leastFill) {
            taken = sizes[i] - leastFill;
        }
        sizes[i] -= taken;
        bytes -= taken;
    }
    return bytes == 0;
}

} // namespace

FillRoom giveRoom(const Templates::vector<FillSlot>& slots) {
    std::uint64_t content = 0;
    for (const FillSlot& slot : slots) {
        content += slot.content;
    }
    const std::uint64_t size = slots.back().end;
    FillRoom room;
    room.sizes.resize(slots.size());
    if (content > size) {
        room.missing = content - size;
        return room;
    }
    const std::uint64_t fill = size - content;
    if (fill != 0 && fill < leastFill) {
        room.gap = fill;
        return room;
    }
    const std::uint64_t end = keepPlaces(slots, room.sizes);
    if (end < size) {
        // Too few bytes for a fill item are left at the end, so there is another one.
        *std::find_if(room.sizes.rbegin(), room.sizes.rend(),
                      [](std::uint64_t each) { return each != 0; }) += size - end;
    } else if (!shrink(room.sizes, end - size)) {
        std::fill(room.sizes.begin(), room.sizes.end(), 0);
        room.sizes.back() = fill;
    }
    return room;
}

unsigned char fillOctets(std::uint64_t size, unsigned char wanted) noexcept {
    for (unsigned char octets = wanted; octets <= 9; ++octets) {
        const std::uint64_t head = KLV::Key::length + std::uint64_t{octets};
        if (size >= head && KLV::berOctets(size - head, octets) == octets) {
            return octets;
        }
    }
    return 1;
}

} // namespace Corvid::mxf
