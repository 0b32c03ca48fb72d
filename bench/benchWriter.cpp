#include "XMLBuilder/XMLBuilder.h"
#include "bench/GeneratedMetadata.h"
#include "bench/Ratios.h"
#include "bench/ThreadTime.h"

#include <benchmark/benchmark.h>
#include <map>
#include <xercesc/dom/DOM.hpp>

namespace {

using namespace Corvid;
using Document = Templates::auto_ptr<xercesc::DOMNode>;

/// Generated metadata as it stands in memory after reading, made once per number of sets.
struct Model {
    explicit Model(std::size_t sets) {
        const Bench::GeneratedFile made = Bench::generateFile(sets);
        properties = made.properties;
        partition = Bench::readMetadata(made);
    }

    static Model& of(const benchmark::State& state) {
        static std::map<std::int64_t, Model> models;
        return models.try_emplace(state.range(0), static_cast<std::size_t>(state.range(0)))
            .first->second;
    }

    Document write() const { return XMLBuilder::partition2XML(partition.get(), false, false); }

    std::size_t properties = 0;
    Templates::auto_ptr<Metadata::PartitionMetadata> partition;
};

/// Measures the making of a document in processor time, which other programs disturb least; that
/// it is released again does not count.
template <class Make> void measure(benchmark::State& state, Make make) {
    for (auto _ : state) {
        const Bench::ThreadTime time;
        const Document made = make();
        state.SetIterationTime(time.seconds());
    }
}

void partition2XML(benchmark::State& state) {
    const Model& model = Model::of(state);
    measure(state, [&] { return model.write(); });
    state.counters["properties"] = static_cast<double>(model.properties);
}

void cloneNode(benchmark::State& state) {
    const Document original = Model::of(state).write();
    measure(state, [&] { return Document(original->cloneNode(true)); });
}

constexpr std::int64_t few = 1000;
constexpr std::int64_t many = 100000;

void scale(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(few)->Arg(many)->MinTime(0.05)->UseManualTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(partition2XML)->Apply(scale);
BENCHMARK(cloneNode)->Apply(scale);

void printRatios(Bench::Ratios& ratios) {
    ratios.print("partition2XML to cloneNode(true), 1,000 sets", {"partition2XML/1000"},
                 {"cloneNode/1000"}, 1.0);
    ratios.print("partition2XML to cloneNode(true), 100,000 sets", {"partition2XML/100000"},
                 {"cloneNode/100000"}, 1.0);
    ratios.print("partition2XML per set, of 100,000 to of 1,000 sets",
                 {"partition2XML/100000", static_cast<double>(many) / few}, {"partition2XML/1000"},
                 1.2);
}

} // namespace

int main(int argc, char** argv) { return Bench::runBenchmarks(argc, argv, printRatios); }
