#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

namespace Corvid::Tool {

/// Keeps the blocks of a file that were used last.
class BlockCache {
public:
    using Bytes = std::vector<unsigned char>;

    static constexpr std::size_t blockSize = std::size_t{256} * 1024; ///< bytes
    static constexpr std::size_t most = 16;                           ///< blocks

    /// @param block  its number from 0.
    /// @return its bytes, valid until the next call; nullptr where it is not kept.
    const Bytes* find(std::uint64_t block);
    void add(std::uint64_t block, Bytes bytes);

private:
    struct Entry {
        std::uint64_t block;
        Bytes bytes;
    };
    std::list<Entry> entries_; ///< the last used one first
};

} // namespace Corvid::Tool
