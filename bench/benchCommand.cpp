#include "bench/CommandRuns.h"
#include "bench/Program.h"
#include "bench/Ratios.h"
#include "host/mxf/File.h"

#include <cstring>

namespace {

using namespace Corvid;

using Bench::addRuns;
using Bench::command;
using Bench::yardstick;

constexpr std::size_t small = 50;
constexpr std::size_t large = 100000;
const std::vector<std::size_t> scales = {small, 1000, 10000, large};

/// What takes some milliseconds is run often, because a single run says
/// more of what else the machine does.
constexpr int often = 51;
constexpr int seldom = 9;

std::string toXml(std::size_t sets) { return "to-xml_" + std::to_string(sets); }

/// A way to go through a document, or to write it, that is none of ours.
struct Rival {
    const char* name;
    const char* what;
};
constexpr Rival rivals[] = {
#ifdef CORVID_BENCH_LIBXML2
    {"libxml2", "libxml2's SAX parse"},
#endif
    {"expat", "expat's parse"},
#ifdef CORVID_BENCH_PUGIXML
    {"pugixml", "pugixml's parse to a DOM"},
#endif
    {"copy", "reading and writing the bytes"},
};

void printRatios(Bench::Ratios& ratios) {
    const std::string cpu = "cpu_ms";
    ratios.print("corvid to-xml, 50 sets, to corvid info, processor time",
                 {"to-xml_stdout", 1, 0, cpu}, {"info_50", 1, 0, cpu}, 1.3);
    ratios.print("corvid to-xml, 50 sets, to XML platform up and down", {toXml(small), 1, 0, cpu},
                 {"platform", 1, 0, cpu}, 0.35);
    ratios.print("corvid info, 50 sets, to XML platform up and down", {"info_50"}, {"platform"},
                 1.6);
    ratios.print("corvid dictionary, one name, to XML platform up and down", {"dictionary"},
                 {"platform"}, 1.6);
    ratios.print("corvid --version to XML platform up and down", {"version"}, {"platform"}, 1.6);
    ratios.print("corvid set of one value to a copy, 50 sets, to corvid --version, processor time",
                 {"set_50", 1, 0, cpu}, {"version", 1, 0, cpu}, 4.0);
    // What is not the start of the process is to grow as the sets do.
    const auto perSet = [](std::size_t sets, const std::string& counter) {
        return Bench::Ratios::Figure{toXml(sets), static_cast<double>(sets - small), 0, counter,
                                     toXml(small)};
    };
    for (const std::string counter : {"", "cpu_ms"}) {
        const std::string what = counter.empty() ? "wall time" : "processor time";
        ratios.print("corvid to-xml per set, 10,000 to 1,000 sets, " + what, perSet(10000, counter),
                     perSet(1000, counter), 1.2);
        ratios.print("corvid to-xml per set, 100,000 to 10,000 sets, " + what,
                     perSet(large, counter), perSet(10000, counter), 1.2);
    }
    ratios.print("corvid to-xml to Xerces-C's SAX parse, 100,000 sets", {toXml(large), 1, 0, cpu},
                 {"sax_100000", 1, 0, cpu}, 1.5);
    ratios.print("corvid from-xml, 50 sets, to XML platform up and down",
                 {"from-xml_50", 1, 0, cpu}, {"platform", 1, 0, cpu}, 0.5);
    ratios.print("corvid from-xml to Xerces-C's parse to a DOM, 100,000 sets",
                 {"from-xml_100000", 1, 0, cpu}, {"dom_100000", 1, 0, cpu}, 0.6);
    ratios.print("peak memory of from-xml to the model alone, 100,000 sets",
                 {"from-xml_100000", 1, 0, "peak_MiB"}, {"model_100000", 1, 0, "peak_MiB"}, 1.3);
    ratios.print("corvid check to to-xml and from-xml, 100,000 sets", {"check_100000", 1, 0, cpu},
                 {toXml(large), 1, 0, cpu, {}, "from-xml_100000"}, 1.6);
    ratios.print("peak memory of to-xml to the model alone, 100,000 sets",
                 {toXml(large), 1, 0, "peak_MiB"}, {"model_100000", 1, 0, "peak_MiB"}, 1.15);
    ratios.print("peak memory of to-xml to 1.5 x document + 20 MB, 100,000 sets",
                 {toXml(100000), 1, 0, "peak_MiB"},
                 {"dom_100000", 1 / 1.5, 20e6 / (1 << 20), "peak_MiB"}, 1.0);
}

/// What to-json and others need for the same metadata, for information.
void tellRivals(Bench::Ratios& ratios) {
    ratios.tell("corvid to-json to corvid to-xml, 100,000 sets", {"to-json_100000", 1, 0, "cpu_ms"},
                {toXml(large), 1, 0, "cpu_ms"});
    ratios.tell("peak memory of corvid to-json to that of corvid to-xml, 100,000 sets",
                {"to-json_100000", 1, 0, "peak_MiB"}, {toXml(large), 1, 0, "peak_MiB"});
    for (const Rival& rival : rivals) {
        ratios.tell("corvid to-xml to " + std::string(rival.what) + ", 100,000 sets",
                    {toXml(large), 1, 0, "cpu_ms"}, {rival.name, 1, 0, "cpu_ms"});
        ratios.tell("corvid from-xml to " + std::string(rival.what) + ", 100,000 sets",
                    {"from-xml_100000", 1, 0, "cpu_ms"}, {rival.name, 1, 0, "cpu_ms"});
    }
}

/// What the process does whose memory is measured: it has the metadata of a file and nothing else.
int holdModel(const char* path) {
    mxf::NoWarnings warnings;
    mxf::File file(path, MetaMetadata::Dictionary::builtIn(), warnings);
    const mxf::HeaderMetadata header = file.readMetadata();
    return header.isWhole ? 0 : 1;
}

int runAll(int argc, char** argv) {
    const Bench::CommandFiles files(scales);
    addRuns("platform", {yardstick, "platform"}, often);
    addRuns("version", {command, "--version"}, often);
    addRuns("info_50", {command, "info", files.mxf(small)}, often);
    // As info writes, without the care that a file takes.
    addRuns("to-xml_stdout", {command, "to-xml", files.mxf(small)}, often);
    addRuns("dictionary", {command, "dictionary", "Preface"}, often);
    // In place, only the first run would change something.
    addRuns("set_50",
            {command, "set", files.mxf(small), "Preface/FileLastModified=2024-01-01 00:00:00", "-o",
             files.mxf(small) + ".edited"},
            often);
    for (const std::size_t sets : scales) {
        addRuns(toXml(sets), {command, "to-xml", files.mxf(sets), "-o", files.xml(sets)},
                sets > 1000 ? seldom : often);
    }
    addRuns("to-json_100000",
            {command, "to-json", files.mxf(large), "-o", files.mxf(large) + ".json"}, seldom);
    addRuns("from-xml_50", {command, "from-xml", files.xml(small), "-o", "/dev/null"}, often);
    addRuns("from-xml_100000", {command, "from-xml", files.xml(large), "-o", "/dev/null"}, seldom);
    addRuns("check_100000", {command, "check", files.mxf(large)}, seldom);
    for (const Rival& rival : rivals) {
        addRuns(rival.name, {CORVID_BENCH_RIVALS, rival.name, files.xml(large)}, seldom);
    }
    addRuns("sax_100000", {yardstick, "sax", files.xml(large)}, seldom);
    addRuns("model_100000", {argv[0], "--model", files.mxf(large)}, seldom);
    addRuns("dom_100000", {yardstick, "dom", files.xml(large)}, seldom);
    return Bench::runBenchmarks(argc, argv, [](Bench::Ratios& ratios) {
        printRatios(ratios);
        tellRivals(ratios);
    });
}

} // namespace

int main(int argc, char** argv) {
    return Corvid::Bench::runProgram("benchCommand", [&] {
        const bool holds = argc == 3 && std::strcmp(argv[1], "--model") == 0;
        return holds ? holdModel(argv[2]) : runAll(argc, argv);
    });
}
