#pragma once

#include "host/metadata/PartitionMetadata.h"

namespace Corvid::Fuzzing {

/// Writes metadata as KLV, reads it and compares. Ends the search where anything is different.
/// @return what was read.
/// @throws BaseException  it can't be written.
Templates::auto_ptr<Metadata::PartitionMetadata> roundTripKlv(
    Metadata::PartitionMetadata& metadata);

/// Takes metadata of a file to XML and back, with its identifiers and with new ones, and compares.
/// Ends the search where anything is different.
/// @param metadata  may be changed.
/// @throws BaseException  it can't be written.
void roundTripXml(Metadata::PartitionMetadata& metadata);

/// Takes metadata to XML and back with the library alone, twice. The first time loses what only
/// processing instructions can say, and gives new identifiers; ends the search where the second
/// time changes anything but identifiers. A document that holds a set twice may grow.
/// @throws BaseException  it can't be written, or not be read.
void roundTripLibrary(Metadata::PartitionMetadata& metadata);

} // namespace Corvid::Fuzzing
