#pragma once

#include "tests/support/MxfBuilder.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Corvid::Bench {

/// What a clip is like whose edits are measured.
struct ClipShape {
    std::size_t sets = 0;      ///< of its header metadata
    std::uint64_t essence = 0; ///< bytes at least, all together
    std::size_t bodies = 0;    ///< partitions without header metadata, with essence
    std::size_t room = 0; ///< bytes of fill at the end of each copy of the metadata, at least 20
};

/// A clip with header metadata in its header and in its footer, essence in body partitions, and a
/// random index pack. It may have any size: its essence is a hole unless it is to be filled.
class EditableClip {
public:
    explicit EditableClip(const ClipShape& shape);

    enum class Essence : unsigned char { hole, data };

    /// Makes the file anew.
    /// @throws std::runtime_error  it can't be written, or the file system has no such large files.
    void writeTo(const std::string& path, Essence essence = Essence::hole) const;

    /// Bytes of both copies, with their fill.
    std::uint64_t metadata() const noexcept { return metadata_; }
    /// Bytes of all partition packs and of the random index pack.
    std::uint64_t packs() const noexcept { return packs_; }
    std::size_t partitions() const noexcept { return offsets_.size(); }
    std::uint64_t size() const noexcept { return size_; }

private:
    void add(Testing::PartitionSpec partition, std::uint64_t essence, std::uint64_t footer);

    std::vector<std::pair<std::uint64_t, Testing::Bytes>> pieces_; ///< with their offsets
    std::vector<std::uint64_t> offsets_;                           ///< of the partitions
    std::uint64_t size_ = 0;
    std::uint64_t metadata_ = 0;
    std::uint64_t packs_ = 0;
};

} // namespace Corvid::Bench
