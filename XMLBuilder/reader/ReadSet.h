#pragma once

#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/SetList.h"

namespace Corvid::XMLBuilder {

/// Makes a set of an element, puts it into the list and fills it.
/// @return false where the element's name is that of no set class; nothing has been done then.
bool readSet(Reading& reading, const DocumentNode& element, SetList& sets);

/// Reads a child of the root: a set, or the container of dark sets. Others are left out.
void readChildOfRoot(Reading& reading, const DocumentNode& child, SetList& sets);

} // namespace Corvid::XMLBuilder
