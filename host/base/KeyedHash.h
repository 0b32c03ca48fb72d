#pragma once

#include "Corvid/Export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Corvid {

/// Hashes bytes or text under a secret key (SipHash-2-4), so that nobody can choose texts that
/// share a hash. For tables of what documents and files name.
class CORVID_EXPORT KeyedHash {
public:
    using Key = std::array<unsigned char, 16>;

    /// A key that nobody can guess.
    /// @throws IOError  the system gives no random bytes.
    static Key randomKey();

    /// @param key  random, for each table another.
    explicit KeyedHash(const Key& key) noexcept : key_(key) {}

    std::uint64_t operator()(const unsigned char* bytes, std::size_t size) const noexcept;
    /// The hash of UTF-16 text.
    std::uint64_t operator()(std::u16string_view text) const noexcept;

private:
    Key key_;
};

} // namespace Corvid
