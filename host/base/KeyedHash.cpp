#include "host/base/KeyedHash.h"

#include "host/base/Exceptions.h"

#include <sodium/core.h>
#include <sodium/crypto_shorthash.h>

namespace Corvid {

KeyedHash::Key KeyedHash::randomKey() {
    if (sodium_init() < 0) {
        throw Exceptions::IOError("the system's random source gives no bytes", CORVID_HERE);
    }
    Key key{};
    crypto_shorthash_keygen(key.data());
    return key;
}

std::uint64_t KeyedHash::operator()(const unsigned char* bytes, std::size_t size) const noexcept {
    static_assert(std::tuple_size<Key>::value == crypto_shorthash_KEYBYTES);
    std::uint64_t hash = 0;
    static_assert(sizeof hash == crypto_shorthash_BYTES);
    crypto_shorthash(reinterpret_cast<unsigned char*>(&hash), bytes, size, key_.data());
    return hash;
}

std::uint64_t KeyedHash::operator()(std::u16string_view text) const noexcept {
    return (*this)(reinterpret_cast<const unsigned char*>(text.data()),
                   text.size() * sizeof(char16_t));
}

} // namespace Corvid
