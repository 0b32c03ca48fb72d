#include "host/types/RGBALayout.h"

#include <algorithm>

namespace Corvid::Types {

bool RGBALayout::fits(ByteView bytes) noexcept {
    return bytes.size == fixedSize &&
           std::all_of(bytes.data + 2 * placesInXml, bytes.data + fixedSize,
                       [](u8 byte) { return byte == 0; });
}

RGBALayout::RGBAComponent RGBALayout::get(u32 index) const noexcept {
    if (index >= places) {
        return {};
    }
    return {bytes_[2 * std::size_t{index}], bytes_[2 * std::size_t{index} + 1]};
}

void RGBALayout::set(u32 index, RGBAComponent component) noexcept {
    if (index < places) {
        bytes_[2 * std::size_t{index}] = component.code;
        bytes_[2 * std::size_t{index} + 1] = component.depth;
    }
}

} // namespace Corvid::Types
