#pragma once

#include <string>
#include <vector>

namespace Corvid::Inspection {

/// Two properties of which only one can be true.
struct Contradiction {
    std::string set;      ///< the class of the set; empty where it is about none
    std::string property; ///< one of the two
    std::string text;     ///< what both say
};

using Contradictions = std::vector<Contradiction>;

} // namespace Corvid::Inspection
