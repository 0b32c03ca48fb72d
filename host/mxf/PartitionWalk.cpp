#include "host/mxf/PartitionWalk.h"

#include "host/base/Exceptions.h"
#include "host/mxf/Keys.h"

#include <algorithm>
#include <array>
#include <optional>

namespace Corvid::mxf {

namespace {

using Exceptions::InvalidLength;

/// What every registered key begins with.
constexpr std::array<unsigned char, 4> registeredFront = {0x06, 0x0e, 0x2b, 0x34};

/// The head of the KLV at an offset, taken in one read, or nothing where none is.
std::optional<KLV::Triplet> readKlv(DataIO::ReadWindow& window, std::uint64_t offset) {
    const auto head = window.view(offset, KLV::Triplet::greatestHead);
    if (head.size < registeredFront.size() ||
        !std::equal(registeredFront.begin(), registeredFront.end(), head.data)) {
        return std::nullopt;
    }
    try {
        return KLV::readTriplet(window, offset);
    } catch (const InvalidLength&) {
        return std::nullopt;
    }
}

/// Whether the source ends inside what may be the key or the length of a KLV.
bool isCutInItsHead(DataIO::ReadWindow& window, std::uint64_t offset) {
    const auto head = window.view(offset, KLV::Triplet::greatestHead);
    const std::size_t front = std::min(head.size, registeredFront.size());
    if (!std::equal(head.data, head.data + front, registeredFront.begin())) {
        return false;
    }
    if (head.size <= KLV::Key::length) {
        return true;
    }
    const std::size_t octets = head.data[KLV::Key::length];
    return octets > 0x80 && octets < 0x80 + KLV::BerLength::greatestOctets &&
           head.size < KLV::Key::length + 1 + (octets & 0x7F);
}

/// Whether header metadata may end at an offset: before a KLV, or where the source ends.
bool mayEndAt(DataIO::ReadWindow& window, std::uint64_t offset) {
    return window.source().available(offset - 1, 2) == 1 || readKlv(window, offset);
}

/// The pack of fixed size in front of a partition's list of essence containers, or nothing.
std::optional<Partition> readPartition(DataIO::ReadWindow& window, const KLV::Triplet& triplet) {
    const auto size = std::min<std::uint64_t>(triplet.length.value, partitionPackHead);
    const auto value = window.view(triplet.valueOffset(), static_cast<std::size_t>(size));
    try {
        Partition partition;
        partition.triplet = triplet;
        partition.pack = parsePartitionPack(triplet.key, {value.data, value.size});
        return partition;
    } catch (const InvalidLength&) {
        return std::nullopt;
    }
}

bool isWhole(DataIO::ReadWindow& window, const KLV::Triplet& triplet) {
    return triplet.end() >= triplet.valueOffset() &&
           window.source().available(triplet.valueOffset(), triplet.length.value) ==
               triplet.length.value;
}

} // namespace

PartitionWalk walkPartitions(DataIO::ReadWindow& window, const Partition& header) {
    using End = PartitionWalk::End;
    PartitionWalk walk;
    walk.offset = header.triplet.end();
    // Of the last partition pack, until its header metadata begins.
    std::uint64_t headerByteCount = header.pack.headerByteCount;
    for (std::size_t passed = 0; window.source().available(walk.offset, 1) != 0; ++passed) {
        if (passed == greatestWalk) {
            walk.end = End::limit;
            return walk;
        }
        const auto triplet = readKlv(window, walk.offset);
        if (!triplet) {
            walk.end = isCutInItsHead(window, walk.offset) ? End::cutKlv : End::noKlv;
            return walk;
        }
        if (!isWhole(window, *triplet)) {
            walk.end = End::cutKlv;
            return walk;
        }
        if (isPartitionPack(triplet->key)) {
            if (const auto partition = readPartition(window, *triplet)) {
                headerByteCount = partition->pack.headerByteCount;
                walk.partitions.push_back(*partition);
            }
        } else if (headerByteCount != 0 && !isFill(triplet->key)) {
            const std::uint64_t behind = walk.offset + headerByteCount;
            headerByteCount = 0;
            if (behind > triplet->offset && mayEndAt(window, behind)) {
                walk.offset = behind;
                continue;
            }
        }
        walk.offset = triplet->end();
    }
    return walk;
}

} // namespace Corvid::mxf
