#pragma once

#include "host/dataio/ReadWindow.h"
#include "host/klv/BerInput.h"
#include "host/klv/Key.h"

namespace Corvid::KLV {

/// The head of a KLV triplet: its key and length, and where they are (SMPTE ST 336).
struct Triplet {
    static constexpr std::size_t greatestHead = Key::length + BerLength::greatestOctets;

    Key key;
    std::uint64_t offset = 0; ///< of the key's first byte, in bytes from the front of the source
    BerLength length;

    std::size_t headSize() const noexcept { return Key::length + length.octets; }
    std::uint64_t valueOffset() const noexcept { return offset + headSize(); }
    /// The offset after the value; the greatest number where the sum is beyond it.
    std::uint64_t end() const noexcept {
        const std::uint64_t end = valueOffset() + length.value;
        return end < length.value ? ~std::uint64_t{0} : end;
    }
};

/// Reads the head of the triplet at an offset; the value is not touched.
/// @throws InvalidLength  the source ends inside the head, or the length is none that a KLV
///                        triplet may have; names the offset.
/// @throws IOError        the bytes can't be read.
CORVID_EXPORT Triplet readTriplet(DataIO::ReadWindow& window, std::uint64_t offset);

} // namespace Corvid::KLV
