#pragma once

#include "Corvid/Export.h"

#include <cstddef>
#include <cstdint>

namespace Corvid::DataIO {

/// Bytes that are read from front to back.
class CORVID_EXPORT DataSource {
public:
    virtual ~DataSource();

    /// Reads up to count bytes and moves on past them.
    /// @return how many bytes were read; fewer than count only where the source ends.
    /// @throws IOError  the bytes can't be had.
    virtual std::size_t read(unsigned char* to, std::size_t count) = 0;

    /// How many bytes are left.
    virtual std::uint64_t remaining() const = 0;
};

} // namespace Corvid::DataIO
