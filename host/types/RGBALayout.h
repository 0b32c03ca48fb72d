#pragma once

#include "host/types/FixedBytes.h"

namespace Corvid::Types {

/// The components of a pixel in the order in which they are stored: 8 places of which a code of 0
/// ends the list (SMPTE ST 377-1).
///
/// XML holds five components, so a layout that uses more places than that does not fit this type.
class CORVID_EXPORT RGBALayout : public Visitable<RGBALayout, FixedBytes<16>> {
public:
    static constexpr u32 places = 8;
    static constexpr u32 placesInXml = 5;

    /// One component of a pixel.
    struct RGBAComponent {
        u8 code = 0;  ///< a letter that names the component: R, G, B, A, F (fill) and so on
        u8 depth = 0; ///< bits, or a code above 250 for a floating-point depth
    };

    RGBALayout() noexcept = default;
    explicit RGBALayout(ByteView bytes) noexcept : Visitable(bytes) {}
    static bool fits(ByteView bytes) noexcept;

    /// @param index  a place; a component of zeros is returned after the last.
    RGBAComponent get(u32 index) const noexcept;
    /// @param index  a place; after the last nothing is set.
    void set(u32 index, RGBAComponent component) noexcept;
};

} // namespace Corvid::Types
