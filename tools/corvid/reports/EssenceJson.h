#pragma once

#include <nlohmann/json_fwd.hpp>

namespace Corvid::Inspection {
struct Essence;
}

namespace Corvid::Tool {

/// What a clip is, as an object with the keys "title", "start", "duration", "essence" and so on.
/// Numbers are numbers, what is not stated is null.
nlohmann::ordered_json toJson(const Inspection::Essence& essence);

} // namespace Corvid::Tool
