#pragma once

#include "editing/compare/Comparison.h"
#include "host/base/Templates.h"
#include "host/metadata/PartitionMetadata.h"

namespace Corvid::Editing {

/// What a round trip has shown, and what it has made. To take the latter apart costs some tenth of
/// all, so who is about to end keeps it.
struct RoundTrip : Comparison {
    Templates::auto_ptr<Metadata::PartitionMetadata> fromDocument; ///< with new identifiers
    Templates::auto_ptr<Metadata::PartitionMetadata> fromFile;
};

/// Takes metadata the way of `to-xml --replace-invalid`, then of `from-xml`, reads the file that
/// this gives, and compares; then compares with what `from-xml` makes of it with new identifiers.
///
/// @param metadata  borrowed; afterwards as it was, but for entries that its primer pack lacked.
/// @param listed    how many differences of a kind are listed; all are counted.
/// @throws BaseException  to-xml or from-xml would refuse it.
CORVID_EDITING_EXPORT RoundTrip compareWithRoundTrip(Metadata::PartitionMetadata& metadata,
                                                     std::size_t listed = Differences::mostListed);

} // namespace Corvid::Editing
