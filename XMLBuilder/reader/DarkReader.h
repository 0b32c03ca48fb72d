#pragma once

#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/SetList.h"

namespace Corvid::XMLBuilder {

/// Reads the container of dark sets and of sets outside the Preface's tree: children of known
/// classes become sets, all others dark sets.
/// @param sets  gets the sets of known classes.
/// @throws InvalidFormat  a dark set lacks its key or the size of its length field, or its value is
///                        not in hexadecimal. What came before it stays in the partition.
void readFloatingContainer(Reading& reading, const DocumentNode& container, SetList& sets);

/// Reads a child of the container.
void readChildOfContainer(Reading& reading, const DocumentNode& child, SetList& sets);

} // namespace Corvid::XMLBuilder
