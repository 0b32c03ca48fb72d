#pragma once

#include "host/dataio/FileDescriptor.h"

namespace Corvid::Tool {

/// Notes SIGINT and SIGTERM as long as it lives, unless the process ignores them. A second signal
/// does what it always does. One object at a time.
class Interruption {
public:
    /// @throws IOError  the system has no pipe for it.
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    /// To be polled: there is something to read from the first signal on.
    int number() const noexcept { return reading_.number(); }
    /// The signal that came; 0 where none did.
    int signal() const noexcept;
    /// Ends the process in the way of that signal.
    [[noreturn]] void endProcess() const;

private:
    DataIO::FileDescriptor reading_;
    DataIO::FileDescriptor writing_;
};

} // namespace Corvid::Tool
