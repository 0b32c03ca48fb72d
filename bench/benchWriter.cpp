#include "XMLBuilder/XMLBuilder.h"
#include "bench/GeneratedMetadata.h"
#include "bench/Ratios.h"
#include "bench/ThreadTime.h"

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace {

using namespace Corvid;
using Document = Templates::auto_ptr<xercesc::DOMNode>;

/// Generated metadata as it is in memory after reading, made once per number of sets.
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

/// A document as the calls that make it, one after the other.
class BareCalls {
public:
    explicit BareCalls(const xercesc::DOMDocument& document) {
        const auto& root = *document.getDocumentElement();
        rootUri_ = root.getNamespaceURI();
        rootName_ = root.getNodeName();
        addContent(root);
    }

    Document run() const {
        auto& implementation = *xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
        Document made(implementation.createDocument(rootUri_.c_str(), rootName_.c_str(), nullptr));
        auto& document = static_cast<xercesc::DOMDocument&>(*made);
        xercesc::DOMNode* open = document.getDocumentElement();
        for (const Call& call : calls_) {
            switch (call.kind) {
            case Call::start:
                open = open->appendChild(
                    document.createElementNS(call.uri.c_str(), call.name.c_str()));
                break;
            case Call::attribute:
                static_cast<xercesc::DOMElement*>(open)->setAttributeNS(
                    call.uri.c_str(), call.name.c_str(), call.value.c_str());
                break;
            case Call::text:
                open->appendChild(document.createTextNode(call.value.c_str()));
                break;
            case Call::end:
                open = open->getParentNode();
                break;
            }
        }
        return made;
    }

private:
    struct Call {
        enum Kind { start, attribute, text, end } kind;
        std::u16string uri;
        std::u16string name;
        std::u16string value;
    };

    /// Documents with links are four levels deep.
    void addContent(const xercesc::DOMNode& element) {
        const auto& attributes = *element.getAttributes();
        for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
            const auto& each = *attributes.item(i);
            calls_.push_back(
                {Call::attribute, each.getNamespaceURI(), each.getNodeName(), each.getNodeValue()});
        }
        for (const auto* child = element.getFirstChild(); child != nullptr;
             child = child->getNextSibling()) {
            if (child->getNodeType() == xercesc::DOMNode::TEXT_NODE) {
                calls_.push_back({Call::text, {}, {}, child->getNodeValue()});
            } else {
                calls_.push_back({Call::start, child->getNamespaceURI(), child->getNodeName(), {}});
                addContent(*child);
                calls_.push_back({Call::end, {}, {}, {}});
            }
        }
    }

    std::u16string rootUri_;
    std::u16string rootName_;
    std::vector<Call> calls_;
};

void bareCalls(benchmark::State& state) {
    const Document original = Model::of(state).write();
    const BareCalls calls(static_cast<const xercesc::DOMDocument&>(*original));
    if (!calls.run()->isEqualNode(original.get())) {
        state.SkipWithError("the bare calls make another document");
    }
    measure(state, [&] { return calls.run(); });
}

constexpr std::int64_t few = 1000;
constexpr std::int64_t many = 100000;

void scale(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(few)->Arg(many)->MinTime(0.05)->UseManualTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(partition2XML)->Apply(scale);
BENCHMARK(cloneNode)->Apply(scale);
BENCHMARK(bareCalls)->Apply(scale);

void printRatios(Bench::Ratios& ratios) {
    ratios.print("partition2XML to cloneNode(true), 1,000 sets", {"partition2XML/1000"},
                 {"cloneNode/1000"}, 1.0);
    ratios.print("partition2XML to cloneNode(true), 100,000 sets", {"partition2XML/100000"},
                 {"cloneNode/100000"}, 1.0);
    ratios.print("partition2XML to bare calls, 1,000 sets", {"partition2XML/1000"},
                 {"bareCalls/1000"}, 1.1);
    ratios.print("partition2XML to bare calls, 100,000 sets", {"partition2XML/100000"},
                 {"bareCalls/100000"}, 1.1);
    ratios.print("partition2XML per set, of 100,000 to of 1,000 sets",
                 {"partition2XML/100000", static_cast<double>(many) / few}, {"partition2XML/1000"},
                 1.2);
}

} // namespace

int main(int argc, char** argv) { return Bench::runBenchmarks(argc, argv, printRatios); }
