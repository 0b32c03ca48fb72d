#pragma once

#include <string>

namespace Corvid::Tool {

/// The command line can't be meant; found when the work has begun.
struct UsageError {
    std::string text;
    std::string help = {}; ///< lines that follow the message as they are
};

} // namespace Corvid::Tool
