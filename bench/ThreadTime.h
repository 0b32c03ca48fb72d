#pragma once

#include <ctime>

namespace Corvid::Bench {

/// The processor time that this thread has taken since the object was made: other programs disturb
/// it least.
class ThreadTime {
public:
    double seconds() const { return now() - begin_; }

private:
    static double now() {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }

    double begin_ = now();
};

} // namespace Corvid::Bench
