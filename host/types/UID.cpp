#include "host/types/UID.h"

#include "host/base/Exceptions.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <pthread.h>
#include <sys/random.h>

namespace Corvid::Types::Factories::UID {

namespace {

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

std::atomic<unsigned> forks{0};

/// Bytes of the system got in advance: asking for each identifier costs more than all else of it.
class Pool {
public:
    /// Takes so many bytes; false where another thread is about to.
    bool take(u8* to, std::size_t size) {
        if (taken_.test_and_set(std::memory_order_acquire)) {
            return false;
        }
        const Release release{taken_};
        // A child must not hand out what its parent does.
        if (left_ < size || forks_ != forks) {
            left_ = 0;
            systemRandom(bytes_.data(), bytes_.size());
            left_ = bytes_.size();
            forks_ = forks;
        }
        left_ -= size;
        std::copy_n(bytes_.data() + left_, size, to);
        return true;
    }

private:
    struct Release {
        std::atomic_flag& taken;
        ~Release() { taken.clear(std::memory_order_release); }
    };

    // No mutex, which a child would find locked for ever if it were forked at the wrong moment.
    std::atomic_flag taken_ = ATOMIC_FLAG_INIT;
    std::array<u8, 1024> bytes_{};
    std::size_t left_ = 0;
    unsigned forks_ = 0;
};

void pooledRandom(u8* bytes, std::size_t size) {
    static const bool noticesForks = pthread_atfork(nullptr, nullptr, [] { ++forks; }) == 0;
    static Pool pool;
    if (!noticesForks || !pool.take(bytes, size)) {
        systemRandom(bytes, size);
    }
}

RandomSource randomSource = pooledRandom;

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
    return std::exchange(randomSource, source == nullptr ? pooledRandom : source);
}

} // namespace Corvid::Types::Factories::UID
