#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CORVID_FINDS_LEAKS
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define CORVID_FINDS_LEAKS
#endif

#ifdef CORVID_FINDS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

namespace Corvid::Testing {

/// While it lives, what is allocated counts as no leak. A writer call that gives its document up,
/// or that an exception leaves, does not release the document: callers rely on that, so a test of
/// such a call says so with this.
class LeaksByContract {
public:
    LeaksByContract(const LeaksByContract&) = delete;
    LeaksByContract& operator=(const LeaksByContract&) = delete;
#ifdef CORVID_FINDS_LEAKS
    LeaksByContract() { __lsan_disable(); }
    ~LeaksByContract() { __lsan_enable(); }
#else
    LeaksByContract() = default;
    ~LeaksByContract() {} // not defaulted, so that an object nobody uses is no warning
#endif
};

} // namespace Corvid::Testing
