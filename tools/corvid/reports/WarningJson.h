#pragma once

#include "tools/corvid/terminal/WarningLog.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>

namespace Corvid::Tool {

/// The warnings about a file as an array: an object for each line that people see.
nlohmann::ordered_json toJson(const WarningLog& warnings);

/// "the metadata is cut off at byte 4132"
std::string cutOffText(std::uint64_t offset);

/// What went wrong with a file as an array: it is empty, or has one object for each fact.
/// @param error     what ended the work; empty where nothing did.
/// @param cutOffAt  where the metadata is cut off, if it is.
nlohmann::ordered_json errorsJson(const std::string& error, std::optional<std::uint64_t> cutOffAt);

} // namespace Corvid::Tool
