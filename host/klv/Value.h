#pragma once

#include "host/dataio/DataSource.h"
#include "host/dataio/Slice.h"

namespace Corvid::KLV {

/// The value of a KLV triplet, as its bytes.
class CORVID_EXPORT Value {
public:
    /// Reads size bytes from the position of the source.
    /// @throws InvalidLength  the source ends before; nothing larger than what is left is
    /// allocated.
    Value(DataIO::DataSource& source, std::size_t size);
    Value(const unsigned char* bytes, std::size_t size) : slice_(bytes, size) {}

    const unsigned char* begin() const noexcept { return slice_.begin(); }
    std::size_t size() const noexcept { return slice_.size(); }
    const DataIO::Slice& slice() const noexcept { return slice_; }

private:
    DataIO::Slice slice_;
};

} // namespace Corvid::KLV
