#pragma once

#include "host/klv/Key.h"

/// The keys by which the parts of an MXF file are told apart (SMPTE ST 377-1). The version byte
/// takes no part.
namespace Corvid::mxf {

/// A partition pack of any kind and status, that of a generic stream (SMPTE ST 410) included.
CORVID_EXPORT bool isPartitionPack(const KLV::Key& key) noexcept;
CORVID_EXPORT bool isPrimerPack(const KLV::Key& key) noexcept;
CORVID_EXPORT bool isRandomIndexPack(const KLV::Key& key) noexcept;
CORVID_EXPORT bool isIndexTableSegment(const KLV::Key& key) noexcept;
/// A fill item, whose value means nothing.
CORVID_EXPORT bool isFill(const KLV::Key& key) noexcept;

/// A key that never stands inside header metadata, but behind it: the next partition, index tables,
/// the random index pack, and the elements and system items of essence containers.
CORVID_EXPORT bool endsHeaderMetadata(const KLV::Key& key) noexcept;

/// A key of a single registered item that is no set or pack: an essence element of whatever maker.
CORVID_EXPORT bool isSingleItem(const KLV::Key& key) noexcept;

} // namespace Corvid::mxf
