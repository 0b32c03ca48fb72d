#include "XMLBuilder/json/MetadataJson.h"

#include "XMLBuilder/json/ToJsonSetVisitor.h"

namespace Corvid::XMLBuilder {

namespace {

void writeHead(const DocumentPlan& plan, const JsonContent& content, JsonWriter& to,
               ToJsonSetVisitor& sets) {
    to.member("format", jsonFormat);
    to.numberMember("version", jsonVersion);
    if (!content.file.empty()) {
        to.member("file", content.file);
    }
    if (content.partition) {
        to.numberMember("partition", *content.partition);
    }
    to.member("references", plan.manner().referencesAsValues ? "values" : "links");
    to.key("root");
    if (plan.sets().empty() || !plan.sets().front()->hasInstanceUID()) {
        to.null();
    } else {
        const Metadata::MetadataSet& root = *plan.sets().front();
        sets.writeReference(root.instanceUID(), &root, false);
    }
}

} // namespace

void writeJson(const DocumentPlan& plan, const JsonContent& content, DataIO::DataSink& sink) {
    JsonWriter to(content.layout, sink);
    ToJsonSetVisitor sets(plan, content, to);
    to.beginObject();
    writeHead(plan, content, to, sets);
    to.key("sets");
    to.beginArray();
    for (const auto* const set : plan.sets()) {
        sets.write(*set, plan.mainPass());
    }
    to.end();
    to.key("floating");
    to.beginArray();
    for (const auto& each : plan.floating()) {
        if (each.set != nullptr) {
            sets.write(*each.set, plan.floatingPass());
        } else {
            sets.write(each);
        }
    }
    to.end();
    if (content.offsets != nullptr) {
        sets.writeDefinitions();
    }
    to.end();
    to.flush();
}

} // namespace Corvid::XMLBuilder
