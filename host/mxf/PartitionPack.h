#pragma once

#include "host/dataio/DataSink.h"
#include "host/klv/Triplet.h"
#include "host/types/IdentifierTypes.h"

namespace Corvid::mxf {

/// Where in its file a partition is.
enum class PartitionKind : unsigned char {
    header = 2, ///< the first one
    body = 3,   ///< any other
    footer = 4, ///< the last one, without essence
};

/// What the header metadata of a partition is worth.
enum class PartitionStatus : unsigned char {
    openIncomplete = 1,   ///< values may still change and some are missing
    closedIncomplete = 2, ///< final, but some values are unknown
    openComplete = 3,     ///< every value is there, but may still change
    closedComplete = 4,   ///< final
    genericStream = 0x11, ///< holds data other than essence, and no metadata (SMPTE ST 410)
};

/// The fields of a partition pack (SMPTE ST 377-1). Offsets count in bytes from the first byte of
/// the header partition pack.
struct CORVID_EXPORT PartitionPack {
    PartitionKind kind = PartitionKind::header;
    PartitionStatus status = PartitionStatus::openIncomplete; ///< as in the key, also if it is none
    Types::u16 majorVersion = 0;
    Types::u16 minorVersion = 0;
    Types::u32 kagSize = 0;
    Types::u64 thisPartition = 0;
    Types::u64 previousPartition = 0;
    Types::u64 footerPartition = 0; ///< 0 where it is not known
    Types::u64 headerByteCount = 0; ///< from the primer pack on, the fill after the sets included
    Types::u64 indexByteCount = 0;
    Types::u32 indexSid = 0;
    Types::u64 bodyOffset = 0;
    Types::u32 bodySid = 0;
    Types::UniversalLabel operationalPattern;
    Templates::vector<Types::UniversalLabel> essenceContainers;

    bool isComplete() const noexcept {
        return status == PartitionStatus::openComplete || status == PartitionStatus::closedComplete;
    }
    bool isClosed() const noexcept {
        return status == PartitionStatus::closedIncomplete ||
               status == PartitionStatus::closedComplete;
    }
    /// "header", "body" or "footer".
    const char* kindName() const noexcept;
    /// "open and incomplete" and so on.
    const char* statusName() const noexcept;
};

/// The bytes of a partition pack's value before its list of essence containers, that list's head
/// included.
constexpr std::size_t partitionPackHead = 88;

/// Where fields are in a partition pack's value, in bytes from its front.
namespace PackFields {
constexpr std::uint64_t thisPartition = 8;
constexpr std::uint64_t previousPartition = 16;
constexpr std::uint64_t footerPartition = 24;
constexpr std::uint64_t headerByteCount = 32;
constexpr std::uint64_t operationalPattern = 64;
constexpr std::uint64_t essenceContainers = partitionPackHead; ///< the first label
} // namespace PackFields

/// The most essence containers that are taken from a partition pack.
constexpr std::size_t greatestEssenceContainerCount = 4096;

/// Reads the fields.
/// @param key    a partition pack's.
/// @param value  its value, or the front of it; of a cut list of essence containers what is there
///               is taken.
/// @throws InvalidLength  the value ends before the fields of fixed size do.
CORVID_EXPORT PartitionPack parsePartitionPack(const KLV::Key& key, Types::ByteView value);

/// The bytes of the whole pack in a file: key, length of 4 octets, fields.
CORVID_EXPORT std::uint64_t serializedSize(const PartitionPack& pack) noexcept;
CORVID_EXPORT void serialize(const PartitionPack& pack, DataIO::DataSink& sink);

} // namespace Corvid::mxf
