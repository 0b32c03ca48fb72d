#pragma once

#include "host/types/IdentifierTypes.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Corvid::Editing {

/// Sets of one identifier that became one, and those that did not.
struct MergedCopies {
    /// A set that says something else than a set before it that has its InstanceUID.
    struct Unequal {
        std::string set; ///< what the dictionary calls its class; its key where it does not
        Types::UUID identifier;
        bool isDark;
        /// Of the sets with this identifier, or of all dark sets; from 0, in the order of the
        /// document.
        std::size_t nth;
        bool isExpected; ///< whether the document says that the sets with this identifier differ
    };

    std::size_t equal = 0; ///< how many sets were removed because they are elsewhere
    std::vector<Unequal> unequal;
};

} // namespace Corvid::Editing
