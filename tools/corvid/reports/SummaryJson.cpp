#include "inspection/RegisteredName.h"
#include "inspection/StructuralLabels.h"
#include "inspection/Summary.h"
#include "tools/corvid/reports/EssenceJson.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/reports/SummaryReport.h"
#include "tools/corvid/reports/WarningJson.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Inspection::registeredName;
using Inspection::Summary;

using Json = nlohmann::ordered_json;

Json textOf(const Types::UniversalLabel& label) { return Platform::toUtf8(label.toString()); }

template <class T> Json orNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json orNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json withName(const Types::UniversalLabel& label) {
    return {{"label", textOf(label)}, {"name", orNull(registeredName(label))}};
}

Json toJson(const mxf::Partition& partition) {
    const mxf::PartitionPack& pack = partition.pack;
    return {
        {"kind", pack.kindName()},
        {"status", pack.statusName()},
        {"offset", partition.offset()},
        {"headerBytes", pack.headerByteCount},
        {"indexBytes", pack.indexByteCount},
        {"bodySid", pack.bodySid},
        {"indexSid", pack.indexSid},
        {"kagSize", pack.kagSize},
        {"version", std::to_string(pack.majorVersion) + "." + std::to_string(pack.minorVersion)}};
}

Json toJson(const Summary::Track& track) {
    Json json = {{"id", orNull(track.id)},
                 {"number", orNull(track.number)},
                 {"class", track.className},
                 {"kind", orNull(track.kind)},
                 {"name", orNull(track.name)},
                 {"editRate", nullptr},
                 {"origin", orNull(track.origin)},
                 {"duration", orNull(track.duration)},
                 {"seconds", nullptr},
                 {"timecode", nullptr}};
    if (track.editRate) {
        json["editRate"] = {{"numerator", track.editRate->numerator()},
                            {"denominator", track.editRate->denominator()}};
    }
    if (track.duration) {
        json["seconds"] = orNull(Inspection::seconds(*track.duration, track.editRate));
    }
    if (track.timecode) {
        json["timecode"] = {{"start", timecodeText(*track.timecode)},
                            {"startFrame", track.timecode->start},
                            {"framesPerSecond", track.timecode->framesPerSecond},
                            {"dropFrame", track.timecode->dropFrame}};
    }
    return json;
}

Json toJson(const Summary::Descriptor& descriptor) {
    Json json = {{"class", descriptor.className},
                 {"subDescriptors", descriptor.subDescriptors},
                 {"labels", Json::array()},
                 {"parts", Json::array()}};
    for (const auto& each : descriptor.labels) {
        Json label = {{"class", each.className}, {"property", each.property}};
        label.update(withName(each.label));
        json["labels"].push_back(label);
    }
    for (const auto& part : descriptor.parts) {
        json["parts"].push_back(toJson(part));
    }
    return json;
}

Json toJson(const Summary::Package& package) {
    Json json = {{"kind", package.kind},         {"id", orNull(package.id)},
                 {"name", orNull(package.name)}, {"created", orNull(package.created)},
                 {"descriptor", nullptr},        {"tracks", Json::array()}};
    if (package.descriptor) {
        json["descriptor"] = toJson(*package.descriptor);
    }
    for (const auto& track : package.tracks) {
        json["tracks"].push_back(toJson(track));
    }
    return json;
}

Json toJson(const Summary::Writer& writer) {
    return {{"company", orNull(writer.company)},
            {"product", orNull(writer.product)},
            {"version", orNull(writer.version)},
            {"productVersion", orNull(writer.productVersion)},
            {"toolkitVersion", orNull(writer.toolkitVersion)},
            {"platform", orNull(writer.platform)},
            {"date", orNull(writer.date)}};
}

std::string textOf(const Json& json, JsonLayout layout) {
    return (layout == JsonLayout::line ? jsonLine(json) : jsonText(json)) + "\n";
}

} // namespace

std::string toJson(const Summary& summary, const WarningLog& warnings, JsonLayout layout) {
    const std::string pattern =
        Inspection::Structural::operationalPatternName(summary.operationalPattern);
    Json json = {{"file", summary.file},
                 {"runIn", summary.runIn},
                 {"operationalPattern",
                  {{"name", orNull(pattern)},
                   {"label", textOf(summary.operationalPattern)},
                   {"registeredName", orNull(registeredName(summary.operationalPattern))}}},
                 {"metadata",
                  {{"partition", summary.metadataPartition}, {"whole", summary.metadataIsWhole}}},
                 {"essenceContainers", Json::array()},
                 {"essenceContainerNames", Json::array()},
                 {"descriptiveSchemes", Json::array()},
                 {"conformsTo", Json::array()},
                 {"partitions", Json::array()},
                 {"identifications", Json::array()},
                 {"packages", Json::array()},
                 {"sets", {{"total", summary.sets}, {"byKind", Json(summary.setsByKind)}}},
                 {"darkSets", Json::array()},
                 {"unknownProperties", Json(summary.unknownProperties)},
                 {"unknownPropertyNames", Json::object()},
                 {"misplacedProperties", Json(summary.misplacedProperties)},
                 {"unfitProperties", Json(summary.unfitProperties)},
                 {"warnings", toJson(warnings)},
                 {"errors", errorsJson({}, summary.metadataCutOffAt)}};
    json.update(toJson(summary.essence));
    const auto addAll = [&](const char* key, const auto& items) {
        for (const auto& item : items) {
            json[key].push_back(toJson(item));
        }
    };
    for (const auto& label : summary.essenceContainers) {
        json["essenceContainers"].push_back(textOf(label));
        json["essenceContainerNames"].push_back(orNull(registeredName(label)));
    }
    for (const auto& label : summary.descriptiveSchemes) {
        json["descriptiveSchemes"].push_back(withName(label));
    }
    for (const auto& label : summary.conformsTo) {
        json["conformsTo"].push_back(withName(label));
    }
    addAll("partitions", summary.partitions);
    addAll("identifications", summary.writers);
    addAll("packages", summary.packages);
    for (const auto& [key, count] : summary.darkSets) {
        json["darkSets"].push_back({{"key", key},
                                    {"name", orNull(registeredName(key))},
                                    {"sets", count.sets},
                                    {"bytes", count.bytes}});
    }
    for (const auto& [label, count] : summary.unknownProperties) {
        if (const std::string name = registeredName(label); !name.empty()) {
            json["unknownPropertyNames"][label] = name;
        }
    }
    return textOf(json, layout);
}

std::string failureJson(const std::string& file, const WarningLog& warnings,
                        const std::string& error, JsonLayout layout) {
    return textOf(
        {{"file", file}, {"warnings", toJson(warnings)}, {"errors", errorsJson(error, {})}},
        layout);
}

} // namespace Corvid::Tool
