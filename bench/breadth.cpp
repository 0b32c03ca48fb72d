// What metadata takes that has far more sets than anybody's: whether a million is still linear.

#include "bench/CommandRuns.h"
#include "bench/Program.h"
#include "bench/Ratios.h"

namespace {

using namespace Corvid;
using Bench::command;

constexpr std::size_t smallest = 40; // its cost is that of starting
constexpr std::size_t few = 1000;
constexpr std::size_t many = 100000;
constexpr std::size_t most = 1000000;
const std::vector<std::size_t> scales = {smallest, few, many, most};

std::string nameOf(const std::string& verb, std::size_t sets) {
    return verb + "_" + std::to_string(sets);
}

/// What is not the start of the process is to grow as the sets do. A million's memory is beyond
/// every cache, and the system takes its time to give it.
void printRatios(Bench::Ratios& ratios) {
    for (const std::string verb : {"to-xml", "from-xml", "check"}) {
        const auto perSet = [&](std::size_t sets, const char* counter) {
            return Bench::Ratios::Figure{nameOf(verb, sets), static_cast<double>(sets - smallest),
                                         0, counter, nameOf(verb, smallest)};
        };
        ratios.print("corvid " + verb + " per set, 1,000,000 to 1,000 sets, processor time",
                     perSet(most, "cpu_ms"), perSet(few, "cpu_ms"), 1.3);
        ratios.print("corvid " + verb + " per set, 1,000,000 to 100,000 sets, memory",
                     perSet(most, "peak_MiB"), perSet(many, "peak_MiB"), 1.1);
    }
}

int runAll(int argc, char** argv) {
    const Bench::CommandFiles files(scales);
    for (const std::size_t sets : scales) {
        // A million takes minutes, and little of that is chance; of milliseconds much is.
        const int repetitions = sets > few ? 3 : 51;
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
