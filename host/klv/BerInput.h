#pragma once

#include "Corvid/Export.h"

#include <cstddef>
#include <cstdint>

namespace Corvid::KLV {

/// A length as it is in a KLV triplet: in BER, definite, of up to 9 bytes (SMPTE ST 379,
/// ISO/IEC 8825-1).
struct BerLength {
    static constexpr unsigned greatestOctets = 9;

    std::uint64_t value = 0;  ///< bytes of the KLV value
    unsigned char octets = 1; ///< bytes of the length itself, the first included: 1 to 9
};

/// How many bytes a length has, by its first one: 1 to 9.
/// @throws InvalidLength  the length is indefinite (0x80), longer than 9 bytes or reserved (0xff).
CORVID_EXPORT unsigned berOctetsFromFirst(unsigned char first);

/// Reads a length.
/// @param bytes  positioned at its first byte. Borrowed.
/// @param size   the bytes that are there; those after the length do not matter.
/// @throws InvalidLength  as berOctetsFromFirst(), or the bytes end inside the length.
CORVID_EXPORT BerLength readBer(const unsigned char* bytes, std::size_t size);

} // namespace Corvid::KLV
