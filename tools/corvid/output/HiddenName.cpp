#include "tools/corvid/output/HiddenName.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace Corvid::Tool {

namespace {

// What the signal handler reads: the front of the list of all names. The list changes only while
// signals are held back.
std::atomic<HiddenName*> front{nullptr};
static_assert(std::atomic<HiddenName*>::is_always_lock_free);

bool endsTheProcess(int signalNumber) {
    switch (signalNumber) {
    case SIGCHLD:
    case SIGCONT:
    case SIGSTOP:
    case SIGTSTP:
    case SIGTTIN:
    case SIGTTOU:
    case SIGURG:
    case SIGWINCH:
        return false;
    default:
        return true;
    }
}

void handleEndingSignals(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (int number = 1; number <= SIGRTMAX; ++number) {
        struct sigaction old {};
        // Signals that the caller ignores, as nohup does, stay ignored.
        if (endsTheProcess(number) && ::sigaction(number, nullptr, &old) == 0 &&
            old.sa_handler == SIG_DFL) {
            ::sigaction(number, &action, nullptr);
        }
    }
}

} // namespace

SignalsHeldBack::SignalsHeldBack() noexcept {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, &before_);
}

SignalsHeldBack::~SignalsHeldBack() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

HiddenName::~HiddenName() {
    if (isGiven()) {
        ::unlink(path_.c_str());
        forget();
    }
}

bool HiddenName::give(const std::filesystem::path& folder,
                      const std::function<bool(const char*)>& make) {
    static unsigned count = 0;
    constexpr int tries = 1000; // others may have left files of a process of the same number
    for (int i = 0; i != tries; ++i) {
        const std::string name = std::string(unfinishedName) + std::to_string(::getpid()) + "-" +
                                 std::to_string(++count);
        std::string path = (folder / name).string();
        const SignalsHeldBack held;
        if (make(path.c_str())) {
            path_ = std::move(path);
            removeOnSignal();
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

bool HiddenName::changeTo(const std::string& target) noexcept {
    const SignalsHeldBack held;
    if (std::rename(path_.c_str(), target.c_str()) != 0) {
        return false;
    }
    forget();
    path_.clear();
    return true;
}

void HiddenName::removeOnSignal() noexcept {
    static const bool handled = (handleEndingSignals(removeAll), true);
    static_cast<void>(handled);
    next_ = front;
    if (next_ != nullptr) {
        next_->previous_ = this;
    }
    front = this;
}

void HiddenName::forget() noexcept {
    const SignalsHeldBack held;
    if (next_ != nullptr) {
        next_->previous_ = previous_;
    }
    if (previous_ != nullptr) {
        previous_->next_ = next_;
    } else {
        front = next_;
    }
}

// Calls nothing but what POSIX allows in a signal handler.
void HiddenName::removeAll(int signalNumber) {
    for (const HiddenName* each = front; each != nullptr; each = each->next_) {
        ::unlink(each->path_.c_str());
    }
    // SA_RESETHAND has put the default back, which ends the process in the way of this signal.
    ::raise(signalNumber);
}

} // namespace Corvid::Tool
