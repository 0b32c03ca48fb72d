#include "bench/ChildProcess.h"
#include "bench/GeneratedMetadata.h"
#include "bench/Ratios.h"
#include "bench/WorkFolder.h"

#include <benchmark/benchmark.h>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace {

using namespace Corvid;
using Arguments = std::vector<std::string>;

constexpr const char* command = CORVID_BENCH_COMMAND;
constexpr const char* yardstick = CORVID_BENCH_YARDSTICK;
constexpr std::size_t small = 40;
constexpr std::size_t scales[] = {small, 1000, 10000, 100000};

/// A generated MXF file and its XML for every scale; they go with the object.
class Files {
public:
    void generate() const {
        for (const std::size_t sets : scales) {
            // This process must stay small: see run().
            Bench::inChild([&] { write(mxf(sets), Bench::generateFile(sets).bytes); });
            Bench::run({command, "to-xml", mxf(sets), "-o", xml(sets)});
        }
    }
    std::string mxf(std::size_t sets) const { return path(sets, ".mxf"); }
    std::string xml(std::size_t sets) const { return path(sets, ".xml"); }

private:
    std::string path(std::size_t sets, const char* ending) const {
        return folder_.path(std::to_string(sets) + ending);
    }
    static void write(const std::string& path, const Testing::Bytes& bytes) {
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            throw std::runtime_error("can't write " + path);
        }
    }

    Bench::WorkFolder folder_;
};

/// Measures a program from its start to its end.
void measure(benchmark::State& state, const Arguments& commandLine) {
    Bench::Usage usage;
    for (auto _ : state) {
        usage = Bench::run(commandLine);
        state.SetIterationTime(usage.wallSeconds);
    }
    state.counters["cpu_ms"] = 1000 * usage.cpuSeconds;
    state.counters["peak_MiB"] = usage.peakMiB;
}

/// Each repetition is one run. What takes some milliseconds is run often, because a single run says
/// more of what else the machine does.
constexpr int often = 51;
constexpr int seldom = 9;

void add(const std::string& name, const Arguments& commandLine, int repetitions) {
    const auto work = [commandLine](benchmark::State& state) { measure(state, commandLine); };
    benchmark::RegisterBenchmark(name.c_str(), work)
        ->Repetitions(repetitions)
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

std::string toXml(std::size_t sets) { return "to-xml_" + std::to_string(sets); }

void printRatios(const Bench::Ratios& ratios) {
    ratios.print("corvid to-xml, 40 sets, to XML platform up and down", {toXml(small)},
                 {"platform"}, 1.6);
    ratios.print("corvid info, 40 sets, to XML platform up and down", {"info_40"}, {"platform"},
                 1.6);
    ratios.print("corvid dictionary, one name, to XML platform up and down", {"dictionary"},
                 {"platform"}, 1.6);
    ratios.print("corvid --version to XML platform up and down", {"version"}, {"platform"}, 1.6);
    // What is not the start of the process is to grow as the sets do.
    for (const std::string counter : {"", "cpu_ms"}) {
        const std::string what = counter.empty() ? "wall time" : "processor time";
        ratios.print("corvid to-xml per set, 10,000 to 1,000 sets, " + what,
                     {toXml(10000), 10, 0, counter}, {toXml(1000), 1, 0, counter}, 1.2);
        ratios.print("corvid to-xml per set, 100,000 to 10,000 sets, " + what,
                     {toXml(100000), 10, 0, counter}, {toXml(10000), 1, 0, counter}, 1.2);
    }
    ratios.print("peak memory of to-xml to 1.5 x document + 20 MB, 100,000 sets",
                 {toXml(100000), 1, 0, "peak_MiB"},
                 {"dom_100000", 1 / 1.5, 20e6 / (1 << 20), "peak_MiB"}, 1.0);
}

int runAll(int argc, char** argv) {
    const Files files;
    files.generate();
    add("platform", {yardstick, "platform"}, often);
    add("version", {command, "--version"}, often);
    add("info_40", {command, "info", files.mxf(small)}, often);
    add("dictionary", {command, "dictionary", "Preface"}, often);
    for (const std::size_t sets : scales) {
        add(toXml(sets), {command, "to-xml", files.mxf(sets), "-o", files.xml(sets)},
            sets > 1000 ? seldom : often);
    }
    add("dom_100000", {yardstick, "dom", files.xml(scales[3])}, seldom);
    return Bench::runBenchmarks(argc, argv, printRatios);
}

} // namespace

int main(int argc, char** argv) {
    // Caught, so that the generated files go.
    try {
        return runAll(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "benchCommand: " << error.what() << std::endl;
        return 1;
    }
}
