#pragma once

#include "editing/apply/CarryOut.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Corvid::Tool {

/// An edit of a clip, planned or done.
struct EditReport {
    const std::string& file; ///< what people call the clip
    const Editing::EditPlan& plan;
    Editing::EditWay way;
    std::vector<std::string> copies; ///< what people call those that change
    const MetaMetadata::Dictionary& dictionary;
};

/// What changes, for people: a line for each set and each of its properties with the value before
/// and after.
std::string toText(const Editing::Changes& changes, const MetaMetadata::Dictionary& dictionary);

/// The same for programs: an array with an object for each set.
nlohmann::ordered_json toJson(const Editing::Changes& changes,
                              const MetaMetadata::Dictionary& dictionary);

/// How the edit is written, for people, in one line: "in place: 128 bytes at 3 places, in partition
/// 0 (header)".
std::string wayText(const EditReport& report);

/// All of it for programs; docs/apply.md names the keys.
nlohmann::ordered_json toJson(const EditReport& report);

} // namespace Corvid::Tool
