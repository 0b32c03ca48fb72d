#pragma once

#include "host/base/Text.h"

#include <string>
#include <string_view>
#include <vector>

namespace Corvid::XMLUtils {

/// One of the elements around a place in a document.
struct PathStep {
    std::u16string_view name;      ///< qualified
    std::u16string_view attribute; ///< qualified name of the one that identifies it, or empty
    std::u16string identifier;     ///< that attribute's value
};

/// Whether an attribute of that local name distinguishes one element from others of its name.
bool identifiesElement(std::u16string_view localName);

/// Where in a document something is, for people: the element names from the child of the root
/// downwards, joined by "/", with the identifiers of those that carry one. A long path keeps its
/// first and its last three names.
///
/// @param open           the elements around the place, outermost first; may be empty.
/// @param attributeName  the attribute that the place is in, or empty.
Utf16Text elementPath(const std::vector<PathStep>& open, std::u16string_view attributeName);

} // namespace Corvid::XMLUtils
