#pragma once

#include "host/metadata/MetadataSet.h"

#include <array>

namespace Corvid::Metadata {

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

/// The sets of a partition by their InstanceUID.
class ReferenceIndex {
public:
    using Sets = Templates::vector<MetadataSet*>;

    /// Takes in the sets, which need not have an InstanceUID each, nor one of their own.
    explicit ReferenceIndex(const Sets& sets);

    Targets find(const Types::UUID& uuid) const;

private:
    using Identifier = std::array<Types::u8, Types::UUID::fixedSize>;

    // Searched by halves rather than hashed: whoever makes a file chooses its identifiers, and
    // could choose such as share a hash.
    Templates::vector<Identifier> identifiers_; ///< in order, one for each of sets_
    Sets sets_; ///< those with one InstanceUID in the partition's order
};

} // namespace Corvid::Metadata
