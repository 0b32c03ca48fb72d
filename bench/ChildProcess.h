#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Corvid::Bench {

/// What a process took.
struct Usage {
    double wallSeconds = 0; ///< from before its start until its end was noticed
    double cpuSeconds = 0;  ///< of processor time, the system's on its behalf included
    double peakMiB = 0;     ///< of memory resident at once
    /// Read and written by system calls, from and to files of any kind, from a cache or not; what
    /// is mapped into memory is not counted. Negative where the system keeps no such account.
    double bytes = -1;
};

/// Runs a program with its standard output thrown away.
///
/// The system reckons what the caller ever had resident as the child's, so a caller that wants to
/// know a small peak must have stayed small itself.
/// @throws std::runtime_error  it can't be started or does not end with status 0.
Usage run(const std::vector<std::string>& commandLine);

/// Does work that needs much memory in a process of its own.
/// @throws std::runtime_error  the work throws.
void inChild(const std::function<void()>& work);

} // namespace Corvid::Bench
