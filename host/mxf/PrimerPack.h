#pragma once

#include "host/dataio/DataSink.h"
#include "host/mxf/Warnings.h"
#include "host/types/IdentifierTypes.h"

#include <utility>

namespace Corvid::mxf {

/// The local tags of a partition's header metadata and their labels, in the order of the file; tags
/// and labels may be there more than once.
using PrimerPack = Templates::vector<std::pair<Types::LocalTag, Types::UniversalLabel>>;

/// The bytes of an entry: tag and label.
constexpr std::size_t primerEntrySize = 18;

/// The most bytes of a primer pack that count: an entry for every tag that there is.
constexpr std::size_t greatestPrimerSize = 8 + 0x10000 * primerEntrySize;

/// Reads a primer pack: a batch of tag (2 bytes) and label (16 bytes), SMPTE ST 377-1.
///
/// The length says how many entries there are; a count or an item size that says otherwise is
/// a warning.
/// @param value   its value, or the first greatestPrimerSize bytes of it.
/// @param offset  of the pack in the file, for warnings.
CORVID_EXPORT PrimerPack parsePrimerPack(Types::ByteView value, std::uint64_t offset,
                                         WarningSink& warnings);

/// The bytes of the whole pack in a file: key, length of 4 octets, entries.
CORVID_EXPORT std::uint64_t serializedSize(const PrimerPack& entries) noexcept;
CORVID_EXPORT void serialize(const PrimerPack& entries, DataIO::DataSink& sink);

} // namespace Corvid::mxf
