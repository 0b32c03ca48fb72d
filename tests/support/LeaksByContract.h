#pragma once

#include "tests/support/Sanitizers.h"

#ifdef CORVID_ADDRESS_SANITIZER
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
#ifdef CORVID_ADDRESS_SANITIZER
    LeaksByContract() { __lsan_disable(); }
    ~LeaksByContract() { __lsan_enable(); }
#else
    LeaksByContract() = default;
    ~LeaksByContract() {} // not defaulted, so that an object nobody uses is no warning
#endif
};

} // namespace Corvid::Testing
