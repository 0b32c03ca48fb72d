#pragma once

#include "host/base/Shortened.h"
#include "inspection/SetValues.h"

namespace Corvid::Inspection {

/// The bytes of a title, name, address or other text that are shown of it: several tracks may
/// share a text that is far longer.
constexpr std::size_t longestShownText = 200;

inline std::string shown(std::string_view text) { return shortened(text, longestShownText); }

template <class Property>
std::string shownText(const Metadata::MetadataSet& set, const Property& property) {
    return shown(text(set, property));
}

} // namespace Corvid::Inspection
