#pragma once

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::Fuzzing {

/// Writes metadata as KLV, reads it and compares. Ends the search where anything is different.
/// @throws BaseException  it can't be written.
void roundTripKlv(Metadata::PartitionMetadata& metadata);

/// Takes metadata to XML and back, with its identifiers and with new ones, and compares. Ends the
/// search where anything is different.
/// @param metadata  may be changed.
/// @throws BaseException  it can't be written.
void roundTripXml(Metadata::PartitionMetadata& metadata);

} // namespace Corvid::Fuzzing
