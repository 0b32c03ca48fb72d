#pragma once

#include "bench/WorkFolder.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// What benchmarks of the command share: its input files and how it is run.
namespace Corvid::Bench {

inline constexpr const char* command = CORVID_BENCH_COMMAND;
inline constexpr const char* yardstick = CORVID_BENCH_YARDSTICK;

/// Generated MXF files of several sizes and the XML of each; they go with the object.
class CommandFiles {
public:
    /// @param scales  the numbers of sets.
    explicit CommandFiles(const std::vector<std::size_t>& scales);

    std::string mxf(std::size_t sets) const { return path(sets, ".mxf"); }
    std::string xml(std::size_t sets) const { return path(sets, ".xml"); }

private:
    std::string path(std::size_t sets, const char* ending) const {
        return folder_.path(std::to_string(sets) + ending);
    }

    WorkFolder folder_;
};

/// Registers a benchmark that measures a program from its start to its end: the wall time, and as
/// counters cpu_ms, the processor time, peak_MiB, and bytes, those read and written. Each
/// repetition is one run.
/// @param prepare  is called before each run and not measured.
void addRuns(const std::string& name, const std::vector<std::string>& commandLine, int repetitions,
             const std::function<void()>& prepare = {});

} // namespace Corvid::Bench
