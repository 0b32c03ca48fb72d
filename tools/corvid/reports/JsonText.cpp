#include "tools/corvid/reports/JsonText.h"

#include "tools/corvid/terminal/Printable.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

std::string jsonText(const nlohmann::ordered_json& json) {
    using Handler = nlohmann::ordered_json::error_handler_t;
    return printableJson(json.dump(jsonIndent, ' ', false, Handler::replace));
}

} // namespace Corvid::Tool
