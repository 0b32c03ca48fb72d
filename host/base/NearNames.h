#pragma once

#include "Corvid/Export.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Corvid::Platform {

/// Text without what people do not mind in names: case, blanks, punctuation.
CORVID_EXPORT std::string folded(const std::string& text);

/// Collects the names that are most like one that does not exist.
class CORVID_EXPORT NearNames {
public:
    explicit NearNames(const std::string& wanted);

    void offer(const std::string& name);

    /// Up to five, the most similar first, each once.
    std::vector<std::string> best();

private:
    std::string wanted_; ///< folded
    std::size_t furthest_;
    std::vector<std::pair<std::size_t, std::string>> found_;
};

/// How many letters must be inserted, taken away, replaced or swapped with their neighbour to make
/// one text of the other; where that is more than `most`, some number above it.
CORVID_EXPORT std::size_t editDistance(const std::string& a, const std::string& b,
                                       std::size_t most);

} // namespace Corvid::Platform
