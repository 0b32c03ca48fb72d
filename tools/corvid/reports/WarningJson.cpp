#include "tools/corvid/reports/WarningJson.h"

#include "host/types/IdentifierTypes.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

Json orNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }
Json orNull(const std::optional<std::uint64_t>& offset) {
    return offset ? Json(*offset) : Json(nullptr);
}

/// The name of the property, or its tag if it has none.
Json propertyOf(const mxf::Warning& warning) {
    return warning.property.empty() && warning.localTag
               ? Json(Platform::toUtf8(
                     Types::LocalTag(*warning.localTag).toString(Types::dottedHexadecimal)))
               : orNull(warning.property);
}

} // namespace

Json toJson(const WarningLog& warnings) {
    Json list = Json::array();
    for (const auto& [first, count] : warnings.entries()) {
        list.push_back({{"code", first.kind->code},
                        {"text", first.text},
                        {"count", count},
                        {"first",
                         {{"byte", orNull(first.offset)},
                          {"set", orNull(first.set)},
                          {"property", propertyOf(first)}}}});
    }
    return list;
}

std::string cutOffText(std::uint64_t offset) {
    return "the metadata is cut off at byte " + std::to_string(offset);
}

Json errorsJson(const std::string& error, std::optional<std::uint64_t> cutOffAt) {
    Json list = Json::array();
    if (!error.empty()) {
        list.push_back({{"text", error}, {"byte", nullptr}});
    }
    if (cutOffAt) {
        list.push_back({{"text", cutOffText(*cutOffAt)}, {"byte", *cutOffAt}});
    }
    return list;
}

} // namespace Corvid::Tool
