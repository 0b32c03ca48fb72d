#include "tests/growth/Growth.h"

#include <algorithm>
#include <cstdio>

namespace Corvid::Testing {

namespace {

/// What is too little to say anything of: hash tables with another key in each process, messages of
/// another length, and buffers and the blocks of Xerces-C, which grow by steps that are wide while
/// they are small.
constexpr std::array<double, counterCount> nextToNothing = {250e3, 256, 1 << 20, 1 << 20, 4096};

constexpr std::array<Counter, counterCount> counters = {Counter::instructions, Counter::allocations,
                                                        Counter::allocatedBytes, Counter::peakBytes,
                                                        Counter::outputBytes};

std::string rounded(double factor) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", factor);
    return text;
}

} // namespace

double Growth::factor(Counter counter) const {
    const double floor = nextToNothing[static_cast<std::size_t>(counter)];
    const auto at = [&](std::size_t place) { return static_cast<double>(costs[place][counter]); };
    const double before = at(1) - at(0);
    const double after = at(2) - at(1);
    return after <= floor ? 0 : after / std::max(before, floor);
}

Counter Growth::worst() const {
    const auto excess = [&](Counter counter) { return factor(counter) / greatestGrowth(counter); };
    return *std::max_element(counters.begin(), counters.end(),
                             [&](Counter a, Counter b) { return excess(a) < excess(b); });
}

bool Growth::isBroken() const {
    return std::any_of(costs.begin(), costs.end(),
                       [](const Cost& cost) { return cost.end == Cost::End::broken; });
}

bool Growth::isRefused() const {
    return std::any_of(costs.begin(), costs.end(),
                       [](const Cost& cost) { return cost.end == Cost::End::refused; });
}

std::string Growth::describe() const {
    std::string text = dimension->name + ", " + operation->name + ": ";
    if (isBroken()) {
        return text + "crashed, or took too long";
    }
    const Counter counter = worst();
    text += std::string(nameOf(counter)) + " grow by " + rounded(factor()) + ":";
    for (std::size_t i = 0; i != costs.size(); ++i) {
        text += " " + std::to_string(costs[i][counter]) + " for " + std::to_string(least << i);
    }
    return text + (isRefused() ? ", refused" : "");
}

std::string Growth::cell() const {
    const std::string figure = isBroken() ? "broken" : factor() == 0 ? "0" : rounded(factor());
    return isRefused() ? "(" + figure + ")" : figure;
}

std::vector<Growth> measureGrowth(const Dimension& dimension, Extent extent, std::size_t multiple,
                                  unsigned processes) {
    const std::size_t bearable = std::max(dimension.most / (4 * dimension.least), std::size_t{1});
    const std::size_t least = dimension.least * std::min(multiple, bearable);
    std::vector<Growth> growths;
    std::vector<Task> tasks;
    for (const Operation& operation : operations()) {
        if (operation.takes(dimension.kind) &&
            (extent == Extent::all || operation.containsOthers)) {
            growths.push_back({&operation, &dimension, least, {}});
            for (std::size_t i = 0; i != 3; ++i) {
                tasks.push_back({&operation, &dimension, least << i});
            }
        }
    }
    const std::vector<Cost> costs = measure(tasks, processes);
    for (std::size_t i = 0; i != costs.size(); ++i) {
        growths[i / 3].costs[i % 3] = costs[i];
    }
    return growths;
}

} // namespace Corvid::Testing
