#pragma once

#include "host/types/IdentifierTypes.h"

namespace Corvid::Types::Factories::UID {

/// Which UUID is asked for.
enum TimeSnapVersion : int {
    nilVersion = 0,    ///< the UUID of zeros
    uniqueVersion = 1, ///< a UUID that nobody else has: RFC 4122 version 4
};

/// Makes a UUID.
/// @throws IOError  the system's random source gives nothing.
CORVID_EXPORT UUID generateUUID(TimeSnapVersion version);

/// Where the random bytes come from. Fills size bytes.
using RandomSource = void (*)(u8* bytes, std::size_t size);

/// Takes the place of the system's random source, so that a test's output can be repeated. Null
/// puts the system's source back. Not to be called while another thread makes UUIDs.
/// @return the source in use before.
CORVID_EXPORT RandomSource setRandomSource(RandomSource source) noexcept;

} // namespace Corvid::Types::Factories::UID
