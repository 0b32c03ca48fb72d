#pragma once

#include "tests/growth/Dimension.h"

#include <cstdint>
#include <filesystem>

namespace Corvid::Testing {

/// What an operation works on.
struct Subject {
    std::filesystem::path folder; ///< of its own, with nothing in it but the input
    std::filesystem::path input;  ///< the file with the bytes
    const std::string& bytes;
    std::size_t files; ///< how often a verb that takes several gets it
};

/// What is measured: everything that it needs has been made before.
/// @return whether the input was accepted.
using Work = std::function<bool()>;

/// A verb of the command or a function of the libraries.
struct Operation {
    std::string name;
    std::vector<InputKind> kinds; ///< of input that it takes
    /// Makes what the work needs. Both may write files into the folder; those that the work writes
    /// are part of what it costs.
    std::function<Work(const Subject&)> prepare;
    bool containsOthers = false; ///< so that it alone finds most of what all find

    bool takes(InputKind kind) const;
};

/// All of them. Another operation is another row.
const std::vector<Operation>& operations();

/// Makes what all operations use and the first of them would have to make.
void warmUp();

} // namespace Corvid::Testing
