#pragma once

#include "host/dataio/DataSink.h"

#include <cstdint>

namespace Corvid::KLV {

/// The octets of the BER length field for a length: the wanted number, or more where it needs more.
/// @param wanted  1 (short form) to 9.
CORVID_EXPORT unsigned char berOctets(std::uint64_t length, unsigned char wanted) noexcept;

/// Writes a length as a BER length field of berOctets(length, wanted) octets.
CORVID_EXPORT void writeBer(DataIO::DataSink& sink, std::uint64_t length, unsigned char wanted);

} // namespace Corvid::KLV
