#pragma once

#include "Corvid/Export.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace Corvid {

/// Hashes text under a secret key (SipHash-2-4), so that whoever chooses the texts can't choose
/// such as share a hash. For tables of what documents and files name.
class CORVID_EXPORT KeyedHash {
public:
    using Key = std::array<unsigned char, 16>;

    /// @param key  random, for each table another.
    explicit KeyedHash(const Key& key) noexcept : key_(key) {}

    /// The hash of UTF-16 text.
    std::uint64_t operator()(std::u16string_view text) const noexcept;

private:
    Key key_;
};

} // namespace Corvid
