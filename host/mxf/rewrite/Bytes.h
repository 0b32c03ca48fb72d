#pragma once

#include "host/types/DataType.h"

namespace Corvid::mxf {

/// Bytes with an owner.
using Bytes = Templates::vector<Types::u8>;

inline Types::ByteView viewOf(const Bytes& bytes) noexcept { return {bytes.data(), bytes.size()}; }

inline void append(Bytes& to, Types::ByteView bytes) {
    to.insert(to.end(), bytes.data, bytes.data + bytes.size);
}

/// Bytes at a place in a file.
struct ByteRange {
    std::uint64_t offset = 0; ///< in bytes from the front of the file
    Bytes bytes;

    std::uint64_t end() const noexcept { return offset + bytes.size(); }
};

using ByteRanges = Templates::vector<ByteRange>;

} // namespace Corvid::mxf
