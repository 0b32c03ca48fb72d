#pragma once

#include <functional>

namespace Corvid::Tool {

class Messages;

/// What the command returns to its caller.
enum ExitStatus : int {
    exitDone = 0,
    exitRefused = 1, ///< the data can't be used, or is different
    exitUsage = 2,   ///< the command line is wrong
    exitNoFile = 3,  ///< a file can't be read or written
};

/// What a status means, in the words of help and manual.
struct ExitMeaning {
    ExitStatus status;
    const char* meaning;
};
constexpr ExitMeaning exitMeanings[] = {{exitDone, "done"},
                                        {exitRefused, "data refused or different"},
                                        {exitUsage, "wrong command line"},
                                        {exitNoFile, "file unreadable or unwritable"}};

/// The work is done and reported, but it did not go well.
struct EndedWith {
    /// Why it did not, for what counts many files.
    enum class Cause : unsigned char {
        other,
        different, ///< all was read, and is not as it should be
        noMemory,
    };

    ExitStatus status;
    Cause cause = Cause::other;
};

/// For verbs with --warnings-as-errors.
/// @throws InvalidFormat  they are wanted, and there were warnings.
void refuseWarnings(bool wanted, const Messages& messages);

/// Does the work of a verb. The one place where exceptions become messages and exit statuses.
int guard(const std::function<void()>& work, Messages& messages);

} // namespace Corvid::Tool
