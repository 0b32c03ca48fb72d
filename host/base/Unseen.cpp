#include "host/base/Unseen.h"

#include <algorithm>
#include <iterator>

namespace Corvid::Platform {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// In ascending order.
constexpr Range unseen[] = {
    {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},   {0x115F, 0x1160},
    {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F},   {0x3164, 0x3164},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB},   {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE00FF},
    {0xE01F0, 0xE0FFF},
};

} // namespace

bool isUnseen(char32_t point) noexcept {
    const auto* const range =
        std::lower_bound(std::begin(unseen), std::end(unseen), point,
                         [](const Range& each, char32_t wanted) { return each.last < wanted; });
    return range != std::end(unseen) && range->first <= point;
}

} // namespace Corvid::Platform
