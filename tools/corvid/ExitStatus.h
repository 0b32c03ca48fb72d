#pragma once

#include <functional>
#include <string>

namespace Corvid::Tool {

class Messages;

/// What the command tells whoever called it.
enum ExitStatus : int {
    exitDone = 0,
    exitRefused = 1, ///< the data can't be used, or is different
    exitUsage = 2,   ///< the command line is wrong
    exitNoFile = 3,  ///< a file can't be read or written
};

/// The command line can't be meant; found when the work has begun.
struct UsageError {
    std::string text;
};

/// The work is done and everything about it told, but it did not go well.
struct EndedWith {
    ExitStatus status;
};

/// Does the work of a verb. The one place where exceptions become messages and exit statuses.
int guard(const std::function<void()>& work, Messages& messages);

} // namespace Corvid::Tool
