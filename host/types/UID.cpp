#include "host/types/UID.h"

#include "host/base/Exceptions.h"

#include <array>
#include <cerrno>
#include <sys/random.h>
#include <utility>

namespace Corvid::Types::Factories::UID {

namespace {

// Each identifier asks anew: a store of bytes would have to be kept apart for forked children.
void systemRandom(u8* bytes, std::size_t size) {
    while (size != 0) {
        const ssize_t got = getrandom(bytes, size, 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            throw Exceptions::IOError("the system's random source gives no bytes", CORVID_HERE);
        }
        bytes += got;
        size -= static_cast<std::size_t>(got);
    }
}

RandomSource randomSource = systemRandom;

} // namespace

UUID generateUUID(TimeSnapVersion version) {
    UUID uuid;
    if (version == nilVersion) {
        return uuid;
    }
    std::array<u8, 16> bytes;
    randomSource(bytes.data(), bytes.size());
    bytes[6] = static_cast<u8>((bytes[6] & 0x0F) | 0x40); // version 4: random
    bytes[8] = static_cast<u8>((bytes[8] & 0x3F) | 0x80); // the variant of RFC 4122
    return UUID(bytes);
}

RandomSource setRandomSource(RandomSource source) noexcept {
    return std::exchange(randomSource, source == nullptr ? systemRandom : source);
}

} // namespace Corvid::Types::Factories::UID
