#pragma once

#include "Corvid/Export.h"

#include <cstddef>

namespace Corvid::Metadata {

class MetadataSet;

/// The sets that a reference leads to, in the partition's order; valid until the partition changes.
class CORVID_EXPORT Targets {
public:
    Targets() noexcept = default;
    Targets(MetadataSet* const* begin, std::size_t size) noexcept : begin_(begin), size_(size) {}

    MetadataSet* const* begin() const noexcept { return begin_; }
    MetadataSet* const* end() const noexcept { return begin_ + size_; }
    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    /// The first of them; there must be one.
    MetadataSet& front() const noexcept { return **begin_; }

private:
    MetadataSet* const* begin_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace Corvid::Metadata
