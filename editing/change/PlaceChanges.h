#pragma once

#include "editing/change/Changes.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/rewrite/HeaderEdit.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::Editing {

/// Finds in one copy of header metadata what the changes are about.
/// @param chosen  the copy that the changes were made for: what they change must be the same in
///                both. May be the copy itself.
/// @param where   what people call the copy, for messages: "partition 3 (footer)".
/// @throws InvalidFormat  something is not there, is there already, or differs from what it is in
///                        the chosen copy; the message names the set and the property.
mxf::HeaderEdit placeChanges(const Changes& changes, const mxf::HeaderLayout& copy,
                             const mxf::HeaderLayout& chosen, const std::string& where,
                             const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Editing
