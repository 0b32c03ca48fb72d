#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Corvid::Editing {

/// What became of the processing instructions of a document.
struct SupplementOutcome {
    std::size_t missingSets = 0; ///< that they name and the document does not hold
    std::size_t overruled = 0;   ///< values that were edited, so that the document counts
    /// The first of them, "set Preface 06.0e. ...: property ...".
    std::vector<std::string> firstOverruled;

    /// Elements of one name that nothing was read from.
    struct LeftOut {
        std::string firstPlace; ///< to be put in front of a message
        std::size_t count = 0;
    };
    std::map<std::string, LeftOut> leftOut; ///< by name
};

} // namespace Corvid::Editing
