// What metadata takes that has far more sets than anybody's: whether a million is still linear.

#include "bench/CommandRuns.h"
#include "bench/Program.h"
#include "bench/Ratios.h"

namespace {

using namespace Corvid;
using Bench::command;

const std::vector<std::size_t> scales = {10000, 100000, 1000000};

std::string nameOf(const std::string& verb, std::size_t sets) {
    return verb + "_" + std::to_string(sets);
}

/// What is not the start of the process is to grow as the sets do. A million's memory is beyond
/// every cache, and the system takes its time to give it.
void printRatios(const Bench::Ratios& ratios) {
    for (const std::string verb : {"to-xml", "from-xml", "check"}) {
        const std::string what = "corvid " + verb + " per set, 1,000,000 to 100,000 sets, ";
        ratios.print(what + "processor time", {nameOf(verb, 1000000), 10, 0, "cpu_ms"},
                     {nameOf(verb, 100000), 1, 0, "cpu_ms"}, 1.4);
        ratios.print(what + "memory", {nameOf(verb, 1000000), 10, 0, "peak_MiB"},
                     {nameOf(verb, 100000), 1, 0, "peak_MiB"}, 1.1);
    }
}

int runAll(int argc, char** argv) {
    const Bench::CommandFiles files(scales);
    for (const std::size_t sets : scales) {
        constexpr int repetitions = 3; // it takes minutes, and little of that is chance
        Bench::addRuns(nameOf("to-xml", sets),
                       {command, "to-xml", files.mxf(sets), "-o", files.xml(sets)}, repetitions);
        Bench::addRuns(nameOf("from-xml", sets),
                       {command, "from-xml", files.xml(sets), "-o", "/dev/null"}, repetitions);
        Bench::addRuns(nameOf("check", sets), {command, "check", files.mxf(sets)}, repetitions);
    }
    return Bench::runBenchmarks(argc, argv, printRatios);
}

} // namespace

int main(int argc, char** argv) {
    return Corvid::Bench::runProgram("breadth", [&] { return runAll(argc, argv); });
}
