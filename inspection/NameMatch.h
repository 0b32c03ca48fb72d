#pragma once

#include "host/base/NearNames.h"

#include <string>
#include <vector>

namespace Corvid::Inspection {

using Platform::editDistance;
using Platform::folded;
using Platform::NearNames;

/// Compares names with one that is wanted.
class NameMatch {
public:
    enum Likeness {
        same,  ///< letter by letter
        alike, ///< folded
        part,  ///< the wanted name, or each word of it, is part of the folded name
        none,
    };

    explicit NameMatch(const std::string& wanted);

    Likeness compare(const std::string& name) const;

private:
    std::string wanted_;
    std::string folded_;
    std::vector<std::string> words_; ///< folded
};

} // namespace Corvid::Inspection
