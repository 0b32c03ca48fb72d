#pragma once

#include "tests/growth/Measurement.h"

#include <optional>

namespace Corvid::Testing {

/// The most by which the cost may grow where the input doubles. Work for each one grows by 2, work
/// for each pair by 4, sorting by a little more than 2. Memory comes in blocks that double, which
/// is sometimes before and sometimes after the second number. So do instructions where a file
/// outgrows the block that is read at a time, and chance decides how often a process waits for
/// others.
constexpr double greatestGrowth(Counter counter) {
    switch (counter) {
    case Counter::allocatedBytes:
    case Counter::peakBytes:
        return 3.0;
    case Counter::instructions:
        return 2.7;
    default:
        return 2.2;
    }
}

/// How the cost of an operation grows with a dimension.
struct Growth {
    const Operation* operation;
    const Dimension* dimension;
    std::size_t least;         ///< the first of the three numbers
    std::array<Cost, 3> costs; ///< of that number, its double and its quadruple

    /// The growth of what the doubling adds, so that the start does not count; 0 where it adds
    /// next to nothing.
    double factor(Counter counter) const;
    /// The counter that grows fastest beside what it may.
    Counter worst() const;
    double factor() const { return factor(worst()); }
    bool isBroken() const;
    bool isRefused() const;
    /// Whether it is as it may be.
    bool isSound() const { return !isBroken() && factor() <= greatestGrowth(worst()); }

    /// For messages: dimension, operation, numbers and costs.
    std::string describe() const;
    /// For the table: the factor, in parentheses where the input is refused.
    std::string cell() const;
};

enum class Extent : unsigned char {
    brief, ///< only operations that contain others
    all,
};

/// Measures the operations that take a dimension.
/// @param dimension  borrowed; must outlive the result.
/// @param multiple   by which its numbers are multiplied, as far as its limit allows.
std::vector<Growth> measureGrowth(const Dimension& dimension, Extent extent, std::size_t multiple,
                                  unsigned processes);

} // namespace Corvid::Testing
