#pragma once

#include "editing/change/Changes.h"
#include "tools/corvid/page/WritePage.h"

#include <nlohmann/json_fwd.hpp>

namespace Corvid::Tool {

/// What a page of two clips shows beside what one of the second shows.
struct PageComparison {
    const PageContent& before; ///< the first clip
    const Editing::Changes& changes;
    std::size_t otherInstanceUIDs = 0;
    /// The metadata of the second clip as it was compared: with the InstanceUIDs of the first.
    const Metadata::PartitionMetadata& compared;
    const MetaMetadata::Dictionary& dictionary;
};

/// For each set of the second clip, in the order of its JSON, the number of the one of the first
/// that it belongs together with; null where there is none.
nlohmann::ordered_json pairsOf(const PageComparison& comparison, const PageContent& after);

/// The sets that are in both and differ: an array with the number of the set of the second clip and
/// the labels, or tags, of the properties that differ.
nlohmann::ordered_json changedOf(const PageComparison& comparison, const PageContent& after);

} // namespace Corvid::Tool
