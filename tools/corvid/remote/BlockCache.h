#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>
#include <vector>

namespace Corvid::Tool {

/// Keeps the blocks of a file that were used last.
class BlockCache {
public:
    using Bytes = std::vector<unsigned char>;

    static constexpr std::size_t blockSize = std::size_t{4} * 1024; ///< bytes
    static constexpr std::size_t most = 1024;                       ///< blocks

    /// @param block  its number from 0.
    /// @return its bytes, valid until the next call; nullptr where it is not kept.
    const Bytes* find(std::uint64_t block);
    bool has(std::uint64_t block) const { return places_.count(block) != 0; }
    /// @param block  has() not.
    void add(std::uint64_t block, Bytes bytes);

private:
    struct Entry {
        std::uint64_t block;
        Bytes bytes;
    };
    std::list<Entry> entries_; ///< the last used one first
    std::unordered_map<std::uint64_t, std::list<Entry>::iterator> places_;
};

} // namespace Corvid::Tool
