#include "tools/corvid/CheckReport.h"
#include "tools/corvid/JsonText.h"
#include "tools/corvid/WarningJson.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

Json orNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

const char* nameOf(DifferenceIdentifiers identifiers) {
    switch (identifiers) {
    case DifferenceIdentifiers::both:
        return "both";
    case DifferenceIdentifiers::written:
        return "written";
    case DifferenceIdentifiers::fresh:
        return "new";
    }
    return "";
}

Json toJson(const Difference& difference) {
    const DescribedKind& kind = describe(difference.kind);
    return {{"kind", kind.name},
            // What documents can't hold was told here, too, before they could hold everything.
            {"weight", "real"},
            {"set", orNull(difference.set)},
            {"instanceUID", orNull(difference.instanceUID)},
            {"property", orNull(difference.property)},
            {"detail", orNull(difference.detail)},
            {"identifiers", nameOf(difference.identifiers)}};
}

Json toJson(const CheckedFile& file) {
    Json json = {{"file", file.file},
                 {"result", Tool::nameOf(file.result)},
                 {"sets", nullptr},
                 {"properties", nullptr},
                 {"counts", Json::object()},
                 {"differences", Json::array()},
                 {"error", orNull(file.error)},
                 {"cutOffAt", file.cutOffAt ? Json(*file.cutOffAt) : Json(nullptr)},
                 {"warnings", toJson(file.warnings)},
                 {"errors", errorsJson(file.error, file.cutOffAt)}};
    if (file.result >= CheckResult::refused) {
        return json;
    }
    json["sets"] = file.comparison.sets;
    json["properties"] = file.comparison.properties;
    std::map<DifferenceKind, std::size_t> counts;
    for (const Difference& difference : file.comparison.differences) {
        ++counts[difference.kind];
        json["differences"].push_back(toJson(difference));
    }
    for (const auto& [kind, count] : counts) {
        json["counts"][describe(kind).name] = count;
    }
    return json;
}

} // namespace

std::string toJson(const std::vector<CheckedFile>& files) {
    CheckTally tally;
    Json list = Json::array();
    for (const CheckedFile& file : files) {
        tally.add(file);
        list.push_back(toJson(file));
    }
    Json summary = {{"files", files.size()}};
    for (const auto result : {CheckResult::lossless, CheckResult::cutOff, CheckResult::different,
                              CheckResult::refused, CheckResult::unreadable}) {
        summary[Tool::nameOf(result)] = tally.count(result);
    }
    summary["implied"] = 0; // as weight: programs may ask for it
    const Json json = {{"files", std::move(list)}, {"summary", std::move(summary)}};
    return jsonText(json);
}

} // namespace Corvid::Tool
