#pragma once

#include <cstdint>

/// Counts what the process asks malloc and its kin for, whichever library asks: this executable has
/// a malloc of its own that counts and hands on to that of the C library.
namespace Corvid::Testing::AllocationCounter {

struct Counts {
    std::uint64_t allocations = 0;
    std::uint64_t bytes = 0; ///< of all allocations together
    std::uint64_t peak = 0;  ///< most bytes held at one time, beyond those at the start
};

/// Begins to count, from zero.
void start() noexcept;
/// Ends it.
Counts stop() noexcept;

} // namespace Corvid::Testing::AllocationCounter
