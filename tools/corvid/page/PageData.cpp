#include "tools/corvid/page/PageData.h"

#include "XMLBuilder/json/MetadataJson.h"
#include "host/mxf/layout/FileRegions.h"
#include "tools/corvid/page/PageComparison.h"
#include "tools/corvid/reports/EssenceText.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/reports/SummaryReport.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

/// Writes the members of one object.
class Members {
public:
    explicit Members(DataIO::DataSink& sink) : sink_(sink) { write("{"); }

    void key(const char* name) {
        write(isFirst_ ? "\n\"" : ",\n\"");
        write(name);
        write("\":");
        isFirst_ = false;
    }
    void add(const char* name, const Json& value) {
        key(name);
        write(jsonLine(value));
    }
    void write(std::string_view text) {
        sink_.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }
    void end() { write("\n}"); }

private:
    DataIO::DataSink& sink_;
    bool isFirst_ = true;
};

/// Region by region: a file may have very many.
void writeRegions(const PageContent& content, Members& members) {
    const char* between = "[";
    for (const auto& region :
         mxf::fileRegions(content.source, content.summary.partitions, content.header)) {
        members.write(between);
        members.write(
            jsonLine({{"kind", nameOf(region.kind)},
                      {"begin", region.begin},
                      {"end", region.end},
                      {"partition", region.partition ? Json(*region.partition) : Json(nullptr)}}));
        between = ",";
    }
    members.write(*between == '[' ? "[]" : "]");
}

Json glanceOf(const Inspection::Summary& summary) {
    Json blocks = Json::array();
    for (const SummaryBlock& block : summaryBlocks(summary, false)) {
        blocks.push_back({{"name", block.name}, {"lines", block.lines}});
    }
    return {{"headline", kindText(summary)}, {"blocks", std::move(blocks)}};
}

void writeMetadata(const PageContent& content, DataIO::DataSink& sink) {
    XMLBuilder::JsonContent json;
    json.layout = XMLUtils::Layout::compact;
    json.partition = content.header.partition;
    json.offsets = &content.header.offsets;
    json.mostBytes = content.mostRawBytes.value_or(json.mostBytes);
    XMLBuilder::writeJson(content.plan, json, sink);
}

void writeComparison(const PageComparison& comparison, const PageContent& after,
                     DataIO::DataSink& sink) {
    Members members(sink);
    members.add("otherInstanceUIDs", comparison.otherInstanceUIDs);
    members.add("pairs", pairsOf(comparison, after));
    members.add("changed", changedOf(comparison, after));
    members.key("before");
    writePageData(comparison.before, nullptr, sink);
    members.end();
}

} // namespace

void writePageData(const PageContent& content, const PageComparison* comparison,
                   DataIO::DataSink& sink) {
    const Inspection::Summary& summary = content.summary;
    Members members(sink);
    members.add("format", "corvid-report");
    members.add("version", 1);
    members.add("clip", {{"name", summary.file}, {"size", content.source.size()}});
    members.key("summary");
    members.write(toJson(summary, content.warnings, JsonLayout::line));
    members.add("glance", glanceOf(summary));
    members.key("regions");
    writeRegions(content, members);
    members.add("rawLimit", content.mostRawBytes ? Json(*content.mostRawBytes) : Json(nullptr));
    members.key("metadata");
    writeMetadata(content, sink);
    if (comparison != nullptr) {
        members.key("comparison");
        writeComparison(*comparison, content, sink);
    }
    members.end();
}

} // namespace Corvid::Tool
