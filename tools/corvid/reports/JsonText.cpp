#include "tools/corvid/reports/JsonText.h"

#include "tools/corvid/terminal/Printable.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

std::string dumped(const nlohmann::ordered_json& json, int indent) {
    using Handler = nlohmann::ordered_json::error_handler_t;
    return printableJson(json.dump(indent, ' ', false, Handler::replace));
}

} // namespace

std::string jsonText(const nlohmann::ordered_json& json) { return dumped(json, jsonIndent); }

std::string jsonLine(const nlohmann::ordered_json& json) { return dumped(json, -1); }

} // namespace Corvid::Tool
