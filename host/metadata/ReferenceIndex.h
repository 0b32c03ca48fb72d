#pragma once

#include "host/metadata/MetadataSet.h"

#include <array>
#include <cstring>
#include <unordered_map>

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
    using Bytes = std::array<Types::u8, 16>;
    struct Hash {
        std::size_t operator()(const Bytes& bytes) const noexcept {
            // The bytes may come from an attacker, but equal hashes only cost time in proportion to
            // the sets that share them, and those who count upwards differ in a few bits only.
            Types::u64 halves[2];
            std::memcpy(halves, bytes.data(), sizeof halves);
            const Types::u64 mixed =
                (halves[0] ^ (halves[1] >> 29)) * 0x9E3779B97F4A7C15U + halves[1];
            return static_cast<std::size_t>((mixed ^ (mixed >> 32)) * 0xD6E8FEB86659FD93U);
        }
    };
    struct Range {
        Types::u32 first = 0;
        Types::u32 count = 0;
    };

    Sets grouped_; ///< the sets with one InstanceUID stand side by side
    std::unordered_map<Bytes, Range, Hash> ranges_;
};

} // namespace Corvid::Metadata
