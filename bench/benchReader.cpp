#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "bench/ChildProcess.h"
#include "bench/GeneratedMetadata.h"
#include "bench/Program.h"
#include "bench/Ratios.h"
#include "bench/ThreadTime.h"
#include "bench/WorkFolder.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"

#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

namespace {

using namespace Corvid;

using Arguments = std::vector<std::string>;

constexpr std::int64_t few = 1000;
constexpr std::int64_t many = 100000;

/// The document of generated metadata, in UTF-8 and without white space between its elements: to
/// parse it costs as little as it can.
std::string documentOf(std::size_t sets) {
    const auto partition = Bench::readMetadata(Bench::generateFile(sets));
    const auto document = XMLBuilder::partition2XML(partition.get(), false, false);
    XMLUtils::RefuseInvalidCharacters none;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8, XMLUtils::Layout::compact,
                        none, sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

const std::string& textOf(const benchmark::State& state) {
    static std::map<std::int64_t, std::string> texts;
    std::string& text = texts[state.range(0)];
    if (text.empty()) {
        text = documentOf(static_cast<std::size_t>(state.range(0)));
    }
    return text;
}

std::unique_ptr<Metadata::PartitionMetadata> readMetadata(const std::string& text) {
    auto partition =
        std::make_unique<Metadata::PartitionMetadata>(MetaMetadata::Dictionary::builtIn());
    XML2Partition::getPartitionMetadataFromBuffer(
        reinterpret_cast<const unsigned char*>(text.data()), static_cast<unsigned>(text.size()),
        partition.get());
    return partition;
}

std::unique_ptr<xercesc::XercesDOMParser> parse(const std::string& text) {
    auto parser = std::make_unique<xercesc::XercesDOMParser>();
    parser->setDoNamespaces(true);
    parser->parse(xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()),
                                             text.size(), "document"));
    if (parser->getErrorCount() != 0) {
        throw std::runtime_error("the document does not parse");
    }
    return parser;
}

/// Measures what makes metadata or a document; that it goes again does not count.
template <class Make> void measure(benchmark::State& state, Make make) {
    const std::string& text = textOf(state);
    for (auto _ : state) {
        const Bench::ThreadTime time;
        const auto made = make(text);
        state.SetIterationTime(time.seconds());
    }
}

void getPartitionMetadataFromBuffer(benchmark::State& state) { measure(state, readMetadata); }
void parseToDom(benchmark::State& state) { measure(state, parse); }

void scale(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(few)->Arg(many)->MinTime(0.05)->UseManualTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(getPartitionMetadataFromBuffer)->Apply(scale);
BENCHMARK(parseToDom)->Apply(scale);

void printRatios(Bench::Ratios& ratios) {
    const std::string reader = "getPartitionMetadataFromBuffer";
    ratios.print(reader + " to parse, 1,000 sets", {reader + "/1000"}, {"parseToDom/1000"}, 1.5);
    ratios.print(reader + " to parse, 100,000 sets", {reader + "/100000"}, {"parseToDom/100000"},
                 1.5);
    ratios.print("reader per set, of 100,000 to of 1,000 sets",
                 {reader + "/100000", static_cast<double>(many) / few}, {reader + "/1000"}, 1.2);
}

/// What the process does whose memory is measured: like the yardstick it has the document from a
/// file.
int readFile(const char* path) {
    Metadata::PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    const Utf16Text name = Platform::fromUtf8(path);
    XML2Partition::getPartitionMetadataFromFile(name.c_str(), &partition);
    return 0;
}

int runAll(int argc, char** argv) {
    const Bench::WorkFolder folder;
    const std::string document = folder.path("document.xml");
    // While this process is small: see run().
    Bench::inChild([&] { std::ofstream(document, std::ios::binary) << documentOf(many); });
    const double reader = Bench::run({argv[0], "--read", document}).peakMiB;
    const double dom = Bench::run({CORVID_BENCH_YARDSTICK, "dom", document}).peakMiB;
    return Bench::runBenchmarks(argc, argv, [&](Bench::Ratios& ratios) {
        printRatios(ratios);
        std::cout << "peak memory: reader " << reader << " MiB, bare DOM " << dom << " MiB\n";
        ratios.print("peak memory of the reader to the bare DOM, 100,000 sets", reader, dom, 1.5);
    });
}

} // namespace

int main(int argc, char** argv) {
    return Bench::runProgram("benchReader", [&] {
        const bool reads = argc == 3 && std::strcmp(argv[1], "--read") == 0;
        return reads ? readFile(argv[2]) : runAll(argc, argv);
    });
}
