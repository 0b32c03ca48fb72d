#include "host/mxf/rewrite/PackContainers.h"

#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/klv/BerOutput.h"
#include "host/mxf/Keys.h"
#include "host/mxf/rewrite/FillRoom.h"
#include "host/mxf/rewrite/Segments.h"

namespace Corvid::mxf {

namespace {

Bytes headOf(const KLV::Key& key, std::uint64_t length, unsigned char octets) {
    DataIO::Memory::MemoryDataSink head;
    key.serialize(head);
    KLV::writeBer(head, length, octets);
    return {head.rawBuffer(), head.rawBuffer() + head.serializedSize()};
}

Bytes copyOf(DataIO::ReadWindow& window, std::uint64_t offset, std::uint64_t size) {
    const auto view = window.view(offset, static_cast<std::size_t>(size));
    return {view.data, view.data + view.size};
}

/// The fill after a pack, or nothing.
std::optional<KLV::Triplet> fillAfter(DataIO::ReadWindow& window, const Partition& partition) {
    try {
        const KLV::Triplet next = KLV::readTriplet(window, partition.triplet.end());
        return isFill(next.key) && next.end() <= partition.end ? std::optional(next) : std::nullopt;
    } catch (const Exceptions::InvalidLength&) {
        return std::nullopt; // the file ends here, or goes on with something that is no KLV
    }
}

} // namespace

std::optional<ByteRanges> resizeContainers(DataIO::ReadWindow& window, const Partition& partition,
                                           const Templates::vector<Types::UniversalLabel>& wanted) {
    constexpr std::size_t labelSize = Types::UniversalLabel::fixedSize;
    constexpr std::uint64_t batchHead = 8; // number and size of the labels
    const KLV::Triplet& pack = partition.triplet;
    const std::uint64_t found = partition.pack.essenceContainers.size() * labelSize;
    const std::uint64_t length = PackFields::essenceContainers + wanted.size() * labelSize;
    if (pack.length.value != PackFields::essenceContainers + found ||
        KLV::berOctets(length, pack.length.octets) != pack.length.octets) {
        return std::nullopt;
    }
    const auto fill = fillAfter(window, partition);
    const std::uint64_t end = fill ? fill->end() : pack.end();
    const std::uint64_t newEnd = pack.valueOffset() + length;
    if (newEnd > end || (newEnd != end && end - newEnd < leastFill)) {
        return std::nullopt;
    }
    const Bytes old = copyOf(window, pack.offset, pack.end() - pack.offset);
    Bytes now = headOf(pack.key, length, pack.length.octets);
    append(now, {old.data() + pack.headSize(),
                 static_cast<std::size_t>(PackFields::essenceContainers - batchHead)});
    for (const std::size_t number : {wanted.size(), labelSize}) {
        Types::u8 bytes[sizeof(Types::u32)];
        Types::writeBigEndian(bytes, static_cast<Types::u32>(number));
        append(now, {bytes, sizeof bytes});
    }
    for (const Types::UniversalLabel& label : wanted) {
        append(now, {label.bytes().data(), label.bytes().size()});
    }
    Bytes oldFill;
    if (fill) {
        oldFill = copyOf(window, fill->offset, fill->headSize());
    }
    Bytes newFill;
    if (newEnd != end) {
        const auto octets =
            fillOctets(end - newEnd, fill ? fill->length.octets : pack.length.octets);
        newFill =
            headOf(fill ? fill->key : fillKey(), end - newEnd - KLV::Key::length - octets, octets);
    }
    return differences({{pack.offset, viewOf(old)}, {pack.end(), viewOf(oldFill)}},
                       {{pack.offset, viewOf(now)}, {newEnd, viewOf(newFill)}});
}

} // namespace Corvid::mxf
