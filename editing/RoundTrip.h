#pragma once

#include "editing/compare/Comparison.h"

namespace Corvid::Editing {

/// Takes metadata the way of `to-xml --replace-invalid`, then of `from-xml`, once with the
/// identifiers that it has and once with new ones, reads the file that this gives, and compares.
///
/// @param metadata  borrowed; afterwards as it was, but for entries that its primer pack lacked.
/// @param listed    how many differences of a kind are listed; all are counted.
/// @throws BaseException  to-xml or from-xml would refuse it.
CORVID_EDITING_EXPORT Comparison compareWithRoundTrip(Metadata::PartitionMetadata& metadata,
                                                      std::size_t listed = Differences::mostListed);

} // namespace Corvid::Editing
