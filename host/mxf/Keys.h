#pragma once

#include "host/klv/Key.h"

/// The keys by which the parts of an MXF file are recognised (SMPTE ST 377-1). The version byte
/// takes no part.
namespace Corvid::mxf {

/// A partition pack of any kind and status, that of a generic stream (SMPTE ST 410) included.
CORVID_EXPORT bool isPartitionPack(const KLV::Key& key) noexcept;
CORVID_EXPORT bool isPrimerPack(const KLV::Key& key) noexcept;
CORVID_EXPORT bool isRandomIndexPack(const KLV::Key& key) noexcept;
CORVID_EXPORT bool isIndexTableSegment(const KLV::Key& key) noexcept;
/// A fill item, whose value means nothing.
CORVID_EXPORT bool isFill(const KLV::Key& key) noexcept;

/// A key that is never inside header metadata, but after it: the next partition, index tables,
/// the random index pack, and the elements and system items of essence containers.
CORVID_EXPORT bool endsHeaderMetadata(const KLV::Key& key) noexcept;

/// A key of a single registered item that is no set or pack: an essence element of whatever maker.
CORVID_EXPORT bool isSingleItem(const KLV::Key& key) noexcept;

/// The keys of what is written.
/// @param kind, status  the values of PartitionKind and PartitionStatus.
CORVID_EXPORT KLV::Key partitionPackKey(unsigned char kind, unsigned char status) noexcept;
CORVID_EXPORT const KLV::Key& primerPackKey() noexcept;
CORVID_EXPORT const KLV::Key& fillKey() noexcept;

/// The octets of the lengths of packs and fill items that are written, as everybody writes them.
constexpr unsigned char packBerOctets = 4;

} // namespace Corvid::mxf
