#pragma once

#include "tests/growth/Growth.h"

namespace Corvid::Testing {

/// Operations whose cost may grow faster than a dimension, and why.
struct KnownGrowth {
    std::string dimension;
    std::vector<std::string> operations;
    std::string reason;
};

const std::vector<KnownGrowth>& knownGrowths();

/// What is wrong: cost that grows too fast and is not known to. Known ones that do not grow too
/// fast count, too, where all is counted.
/// @param isComplete  whether instructions are counted, and the numbers are those of the table.
std::vector<std::string> mistakesIn(const std::vector<Growth>& growths, bool isComplete);

} // namespace Corvid::Testing
