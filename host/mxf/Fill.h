#pragma once

#include "host/dataio/DataSink.h"

#include <cstdint>

/// Fill items, by which what follows them begins where it should (SMPTE ST 377-1).
namespace Corvid::mxf {

/// The bytes of the smallest fill item that is written: key and a length of 4 octets.
constexpr std::uint64_t smallestFill = 20;

/// The bytes of the fill item after which a multiple of the KAG size is reached: 0, or
/// smallestFill at least.
/// @param position  where the fill item would begin, in bytes from a multiple.
/// @param kagSize   0 and 1 ask for no fill.
CORVID_EXPORT std::uint64_t fillUpToKag(std::uint64_t position, std::uint64_t kagSize) noexcept;

/// Writes a fill item.
/// @param size  of the whole item in bytes: 0 for none, or smallestFill at least.
CORVID_EXPORT void writeFill(DataIO::DataSink& sink, std::uint64_t size);

} // namespace Corvid::mxf
