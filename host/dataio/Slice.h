#pragma once

#include "Corvid/Export.h"
#include "host/base/Templates.h"

#include <cstddef>

namespace Corvid::DataIO {

/// A run of bytes with an owner.
class CORVID_EXPORT Slice {
public:
    Slice() noexcept = default;
    Slice(const unsigned char* bytes, std::size_t size);

    const unsigned char* begin() const noexcept { return bytes_.data(); }
    const unsigned char* end() const noexcept { return bytes_.data() + bytes_.size(); }
    std::size_t size() const noexcept { return bytes_.size(); }

private:
    Templates::vector<unsigned char> bytes_;
};

} // namespace Corvid::DataIO
