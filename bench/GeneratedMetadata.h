#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "tests/support/MxfBuilder.h"

#include <cstddef>

namespace Corvid::Bench {

/// A file of one partition whose header metadata is as real files have it: packages with tracks,
/// sequences and clips; integers, positions, strings, timestamps, labels and references.
struct GeneratedFile {
    Testing::Bytes bytes;
    std::size_t properties = 0; ///< of all sets; 5.7 to 5.8 per set where there are many
};

/// @param sets  how many sets, at least 4, at most some 66 million. Beyond 102,000, where the list
/// of
///     the packages fills its property (65,535 bytes), each package has more tracks than the six
///     of real files. The same bytes on every call.
GeneratedFile generateFile(std::size_t sets);

/// The metadata of such a file as it is in memory after reading.
Templates::auto_ptr<Metadata::PartitionMetadata> readMetadata(const GeneratedFile& file);

} // namespace Corvid::Bench
