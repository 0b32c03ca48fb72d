#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <utility>
#include <vector>

/// A change of libFuzzer's own, with the words of the dictionary among others.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size,
                                        std::size_t greatestSize);

/// What the custom mutators share.
namespace Corvid::Fuzzing {

using Random = std::minstd_rand;

/// @param limit  not 0.
inline std::size_t below(std::size_t limit, Random& random) { return random() % limit; }

/// True once in so many times.
inline bool onceIn(std::size_t times, Random& random) { return below(times, random) == 0; }

/// @param items  not empty.
template <class Items> auto& oneOf(Items& items, Random& random) {
    return items[below(std::size(items), random)];
}

/// Changes bytes as libFuzzer does by itself.
/// @param bytes  a container of single bytes.
template <class Bytes> void mutateBytes(Bytes& bytes) {
    constexpr std::size_t room = 64; // how much they may grow at once
    const std::size_t size = bytes.size();
    bytes.resize(size + room);
    bytes.resize(
        LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(bytes.data()), size, bytes.size()));
}

/// Removes an item, doubles it, or swaps it with another.
/// @param items  not empty.
template <class Item> void rearrange(std::vector<Item>& items, Random& random) {
    const auto at = items.begin() + static_cast<std::ptrdiff_t>(below(items.size(), random));
    switch (below(3, random)) {
    case 0:
        items.erase(at);
        break;
    case 1: {
        Item copy = *at;
        items.insert(at, std::move(copy));
        break;
    }
    default:
        std::swap(*at, oneOf(items, random));
    }
}

} // namespace Corvid::Fuzzing
