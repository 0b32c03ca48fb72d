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
            // What documents can't hold was told here, too, before they could hold everything.
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

void CheckJson::add(const CheckedFile& file) {
    const bool isCompared = file.result < CheckResult::refused;
    const Editing::Comparison& comparison = file.comparison;
    json_.beginObject();
    json_.member("file", file.file);
    json_.member("result", Tool::nameOf(file.result));
    json_.member("sets", isCompared ? Json(comparison.sets) : Json(nullptr));
    json_.member("properties", isCompared ? Json(comparison.properties) : Json(nullptr));
    json_.member("counts", countsOf(comparison.differences));
    json_.key("differences");
    json_.beginArray();
    for (const Editing::Difference& difference : comparison.differences) {
        json_.value(toJson(difference));
    }
    json_.end();
    if (const std::size_t leftOut = comparison.differences.leftOut(); leftOut != 0) {
        json_.member("leftOut", leftOut);
    }
    json_.member("error", orNull(file.error));
    json_.member("cutOffAt", file.cutOffAt ? Json(*file.cutOffAt) : Json(nullptr));
    json_.member("warnings", toJson(file.warnings));
    json_.member("errors", errorsJson(file.error, file.cutOffAt));
    json_.end();
}

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
