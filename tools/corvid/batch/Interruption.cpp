#include "tools/corvid/batch/Interruption.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

constexpr int noted[] = {SIGINT, SIGTERM};

// What the signal handler reads and writes.
std::atomic<int> received{0};
std::atomic<int> wakeUp{-1};
static_assert(std::atomic<int>::is_always_lock_free);

// Calls nothing but what POSIX allows in a signal handler.
void note(int number) {
    const int error = errno;
    received = number;
    for (const int each : noted) {
        std::signal(each, SIG_DFL);
    }
    const char any = 0;
    static_cast<void>(::write(wakeUp, &any, 1) == 1);
    errno = error;
}

bool isHandledBy(int number, void (*handler)(int)) {
    struct sigaction action {};
    return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == handler;
}

} // namespace

Interruption::Interruption() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        DataIO::throwSystemError("can't wait for signals", errno);
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    reading_ = DataIO::FileDescriptor::owning(ends[0]);
    writing_ = DataIO::FileDescriptor::owning(ends[1]);
    received = 0;
    wakeUp = ends[1];
    for (const int number : noted) {
        if (isHandledBy(number, SIG_DFL)) {
            std::signal(number, note);
        }
    }
}

Interruption::~Interruption() {
    for (const int number : noted) {
        if (isHandledBy(number, note)) {
            std::signal(number, SIG_DFL);
        }
    }
    wakeUp = -1;
}

int Interruption::signal() const noexcept { return received; }

void Interruption::endProcess() const {
    std::signal(received, SIG_DFL);
    std::raise(received);
    std::_Exit(EXIT_FAILURE); // not where the signal ends the process
}

} // namespace Corvid::Tool
