#include "tools/corvid/reports/CheckJson.h"

#include "tools/corvid/reports/WarningJson.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

Json orNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

const char* nameOf(Editing::DifferenceIdentifiers identifiers) {
    switch (identifiers) {
    case Editing::DifferenceIdentifiers::both:
        return "both";
    case Editing::DifferenceIdentifiers::written:
        return "written";
    case Editing::DifferenceIdentifiers::fresh:
        return "new";
    }
    return "";
}

Json toJson(const Editing::Difference& difference) {
    const Editing::DescribedKind& kind = describe(difference.kind);
    return {{"kind", kind.name},
            // What documents can't hold was reported here, too, before they could hold everything.
            {"weight", "real"},
            {"set", orNull(difference.set)},
            {"instanceUID", orNull(difference.instanceUID)},
            {"property", orNull(difference.property)},
            {"detail", orNull(difference.detail)},
            {"identifiers", nameOf(difference.identifiers)}};
}

/// How many differences there are of each kind that the file has.
Json countsOf(const Editing::Differences& differences) {
    Json counts = Json::object();
    for (const Editing::DescribedKind& each : Editing::differenceKinds) {
        if (const std::size_t count = differences.count(each.kind); count != 0) {
            counts[each.name] = count;
        }
    }
    return counts;
}

} // namespace

CheckJson::CheckJson(DataIO::DataSink& sink) : json_(sink) {
    json_.beginObject();
    json_.key("files");
    json_.beginArray();
}

nlohmann::ordered_json toJson(const CheckedFile& file) {
    const bool isCompared = file.result < CheckResult::refused;
    const Editing::Comparison& comparison = file.comparison;
    Json differences = Json::array();
    for (const Editing::Difference& difference : comparison.differences) {
        differences.push_back(toJson(difference));
    }
    Json json = {{"file", file.file},
                 {"result", nameOf(file.result)},
                 {"sets", isCompared ? Json(comparison.sets) : Json(nullptr)},
                 {"properties", isCompared ? Json(comparison.properties) : Json(nullptr)},
                 {"counts", countsOf(comparison.differences)},
                 {"differences", std::move(differences)}};
    if (const std::size_t leftOut = comparison.differences.leftOut(); leftOut != 0) {
        json["leftOut"] = leftOut;
    }
    json["error"] = orNull(file.error);
    json["cutOffAt"] = file.cutOffAt ? Json(*file.cutOffAt) : Json(nullptr);
    json["warnings"] = toJson(file.warnings);
    json["errors"] = errorsJson(file.error, file.cutOffAt);
    return json;
}

void CheckJson::add(const CheckedFile& file) { json_.value(toJson(file)); }

void CheckJson::finish(const CheckTally& tally) {
    json_.end();
    Json summary = {{"files", tally.files()}};
    for (const auto result : {CheckResult::lossless, CheckResult::cutOff, CheckResult::different,
                              CheckResult::refused, CheckResult::unreadable}) {
        summary[Tool::nameOf(result)] = tally.count(result);
    }
    summary["implied"] = 0; // as weight: programs may ask for it
    json_.member("summary", summary);
    json_.end();
}

} // namespace Corvid::Tool
