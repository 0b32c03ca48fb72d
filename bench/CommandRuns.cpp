#include "bench/CommandRuns.h"

#include "bench/ChildProcess.h"
#include "bench/GeneratedMetadata.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <stdexcept>

namespace Corvid::Bench {

namespace {

void write(const std::string& path, const Testing::Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        throw std::runtime_error("can't write " + path);
    }
}

void measure(benchmark::State& state, const std::vector<std::string>& commandLine,
             const std::function<void()>& prepare) {
    Usage usage;
    for (auto _ : state) {
        if (prepare) {
            prepare();
        }
        usage = run(commandLine);
        state.SetIterationTime(usage.wallSeconds);
    }
    state.counters["cpu_ms"] = 1000 * usage.cpuSeconds;
    state.counters["peak_MiB"] = usage.peakMiB;
    state.counters["bytes"] = usage.bytes;
}

} // namespace

CommandFiles::CommandFiles(const std::vector<std::size_t>& scales) {
    for (const std::size_t sets : scales) {
        // This process must stay small: see run().
        inChild([&] { write(mxf(sets), generateFile(sets).bytes); });
        run({command, "to-xml", mxf(sets), "-o", xml(sets)});
    }
}

void addRuns(const std::string& name, const std::vector<std::string>& commandLine, int repetitions,
             const std::function<void()>& prepare) {
    const auto work = [commandLine, prepare](benchmark::State& state) {
        measure(state, commandLine, prepare);
    };
    benchmark::RegisterBenchmark(name.c_str(), work)
        ->Repetitions(repetitions)
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace Corvid::Bench
