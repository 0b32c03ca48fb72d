#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "tests/support/MxfBuilder.h"

#include <cstddef>

namespace Corvid::Bench {

/// Header metadata as real files have it: packages with tracks, sequences and clips; integers,
/// positions, strings, timestamps, labels and references.
struct GeneratedMetadata {
    Testing::Bytes bytes;       ///< from the primer pack on
    std::size_t properties = 0; ///< of all sets; 5.7 to 5.8 per set where there are many
};

/// @param sets  how many sets, at least 4, at most some 66 million. Beyond 102,000, where the list
/// of
///     the packages fills its property (65,535 bytes), each package has more tracks than the six
///     of real files. The same bytes on every call.
GeneratedMetadata generateMetadata(std::size_t sets);

/// A file of one partition with generated metadata.
struct GeneratedFile {
    Testing::Bytes bytes;
    std::size_t properties = 0; ///< of all sets
};

/// @param sets  as for generateMetadata().
GeneratedFile generateFile(std::size_t sets);

/// The metadata of such a file as it is in memory after reading.
Templates::auto_ptr<Metadata::PartitionMetadata> readMetadata(const GeneratedFile& file);

} // namespace Corvid::Bench
