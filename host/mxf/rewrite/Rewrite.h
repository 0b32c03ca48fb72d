#pragma once

#include "host/mxf/rewrite/Bytes.h"

namespace Corvid::mxf {

/// Bytes that a file gets in its midst; what follows moves towards its end.
struct Insertion {
    std::uint64_t offset = 0; ///< in bytes from the front of the file as it was
    std::uint64_t size = 0;   ///< in bytes
};

/// What is to happen to a file: first all insertions, then all writes.
struct Rewrite {
    std::uint64_t oldSize = 0;               ///< of the file, in bytes
    Templates::vector<Insertion> insertions; ///< in the order of the file; none in place
    ByteRanges writes;                       ///< in bytes of the file as it will be, in its order

    bool isEmpty() const noexcept { return insertions.empty() && writes.empty(); }

    /// The size of the file as it will be.
    std::uint64_t newSize() const noexcept {
        std::uint64_t size = oldSize;
        for (const Insertion& insertion : insertions) {
            size += insertion.size;
        }
        return writes.empty() || writes.back().end() < size ? size : writes.back().end();
    }
};

} // namespace Corvid::mxf
