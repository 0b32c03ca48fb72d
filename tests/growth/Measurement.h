#pragma once

#include "tests/growth/Operation.h"

#include <array>
#include <cstdint>

namespace Corvid::Testing {

/// What work costs. Nothing of it is time, so it is the same on every machine.
enum class Counter : unsigned char {
    instructions, ///< of the processor; 0 where nothing counts them
    allocations,
    allocatedBytes, ///< of all allocations together
    peakBytes,      ///< held at one time
    outputBytes,    ///< of results and messages
};
constexpr std::size_t counterCount = 5;
const char* nameOf(Counter counter);

struct Cost {
    enum class End : unsigned char {
        accepted,
        refused,
        broken, ///< it crashed, or took longer than anything should
    };
    End end = End::broken;
    std::array<std::uint64_t, counterCount> counts{};

    std::uint64_t operator[](Counter counter) const {
        return counts[static_cast<std::size_t>(counter)];
    }
};

/// An operation, a dimension, and how many of it.
struct Task {
    const Operation* operation;
    const Dimension* dimension;
    std::size_t number;
};

/// Counts what each task costs, in a process of its own.
/// @param processes  how many may run at the same time.
/// @return one for each task.
std::vector<Cost> measure(const std::vector<Task>& tasks, unsigned processes);

} // namespace Corvid::Testing
