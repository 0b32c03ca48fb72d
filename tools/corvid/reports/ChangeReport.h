#pragma once

#include "editing/apply/CarryOut.h"
#include "editing/apply/ClipHashes.h"

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
    /// The hashes of the header metadata of the copies that change; empty where not asked for.
    std::vector<Editing::ContentHash> headersBefore = {};
    std::vector<Editing::ContentHash> headersAfter = {};
    std::optional<Editing::ContentHash> essence = {}; ///< the hash of what no edit changes
};

/// What changes, for people: a line for each set and each of its properties with the value before
/// and after.
std::string toText(const Editing::Changes& changes, const MetaMetadata::Dictionary& dictionary);

/// The same of two files, with how many sets have other InstanceUIDs.
std::string toText(const Editing::Changes& changes, std::size_t otherInstanceUIDs,
                   const MetaMetadata::Dictionary& dictionary);

/// The same of a plan, with what closes the header.
std::string toText(const Editing::EditPlan& plan, const MetaMetadata::Dictionary& dictionary);

/// The same for programs: an array with an object for each set.
nlohmann::ordered_json toJson(const Editing::Changes& changes,
                              const MetaMetadata::Dictionary& dictionary);

/// How the edit is written, for people, in one line: "in place: 128 bytes at 3 places, in partition
/// 0 (header)".
std::string wayText(const EditReport& report);

/// The hash of the essence, for people, in one line; empty where it was not asked for.
std::string essenceText(const EditReport& report);

/// All of it for programs; docs/apply.md names the keys.
nlohmann::ordered_json toJson(const EditReport& report);

} // namespace Corvid::Tool
