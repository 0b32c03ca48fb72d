#include "host/mxf/PartitionPack.h"

#include "host/base/Exceptions.h"
#include "host/klv/BerOutput.h"
#include "host/mxf/Keys.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <string>

namespace Corvid::mxf {

namespace {

/// Takes numbers and labels one after the other.
class Fields {
public:
    explicit Fields(const Types::u8* bytes) noexcept : next_(bytes) {}

    template <class Number> void take(Number& number) noexcept {
        number = Types::readBigEndian<Number>(next_);
        next_ += sizeof(Number);
    }
    void take(Types::UniversalLabel& label) noexcept {
        label = Types::UniversalLabel(Types::ByteView{next_, KLV::Key::length});
        next_ += KLV::Key::length;
    }

private:
    const Types::u8* next_;
};

/// Writes numbers and labels one after the other.
class FieldSink {
public:
    explicit FieldSink(DataIO::DataSink& sink) noexcept : sink_(sink) {}

    template <class Number> void take(Number number) {
        Types::u8 bytes[sizeof(Number)];
        Types::writeBigEndian(bytes, number);
        sink_.write(bytes, sizeof bytes);
    }
    void take(const Types::UniversalLabel& label) { label.serialize(sink_); }

private:
    DataIO::DataSink& sink_;
};

/// Hands the fields of fixed size over in the order of the file.
template <class Pack, class To> void walk(Pack& pack, To& fields) {
    fields.take(pack.majorVersion);
    fields.take(pack.minorVersion);
    fields.take(pack.kagSize);
    fields.take(pack.thisPartition);
    fields.take(pack.previousPartition);
    fields.take(pack.footerPartition);
    fields.take(pack.headerByteCount);
    fields.take(pack.indexByteCount);
    fields.take(pack.indexSid);
    fields.take(pack.bodyOffset);
    fields.take(pack.bodySid);
    fields.take(pack.operationalPattern);
}

std::size_t valueSize(const PartitionPack& pack) noexcept {
    return partitionPackHead + pack.essenceContainers.size() * KLV::Key::length;
}

} // namespace

const char* PartitionPack::kindName() const noexcept {
    switch (kind) {
    case PartitionKind::header:
        return "header";
    case PartitionKind::body:
        return "body";
    case PartitionKind::footer:
        return "footer";
    }
    return "unknown";
}

const char* PartitionPack::statusName() const noexcept {
    switch (status) {
    case PartitionStatus::openIncomplete:
        return "open and incomplete";
    case PartitionStatus::closedIncomplete:
        return "closed and incomplete";
    case PartitionStatus::openComplete:
        return "open and complete";
    case PartitionStatus::closedComplete:
        return "closed and complete";
    case PartitionStatus::genericStream:
        return "a generic stream";
    }
    return "of unknown status";
}

PartitionPack parsePartitionPack(const KLV::Key& key, Types::ByteView value) {
    if (value.size < partitionPackHead) {
        throw Exceptions::InvalidLength("the partition pack has " + std::to_string(value.size) +
                                            " bytes, expected at least " +
                                            std::to_string(partitionPackHead),
                                        CORVID_HERE);
    }
    PartitionPack pack;
    pack.kind = static_cast<PartitionKind>(key[13]);
    pack.status = static_cast<PartitionStatus>(key[14]);
    Fields fields(value.data);
    walk(pack, fields);
    Types::u32 count = 0;
    Types::u32 itemSize = 0;
    fields.take(count);
    fields.take(itemSize);
    if (itemSize == KLV::Key::length) {
        const std::size_t there = (value.size - partitionPackHead) / KLV::Key::length;
        pack.essenceContainers.resize(
            std::min({there, greatestEssenceContainerCount, std::size_t{count}}));
        for (Types::UniversalLabel& label : pack.essenceContainers) {
            fields.take(label);
        }
    }
    return pack;
}

std::uint64_t serializedSize(const PartitionPack& pack) noexcept {
    const std::uint64_t size = valueSize(pack);
    return KLV::Key::length + KLV::berOctets(size, packBerOctets) + size;
}

void serialize(const PartitionPack& pack, DataIO::DataSink& sink) {
    partitionPackKey(static_cast<unsigned char>(pack.kind), static_cast<unsigned char>(pack.status))
        .serialize(sink);
    KLV::writeBer(sink, valueSize(pack), packBerOctets);
    FieldSink fields(sink);
    walk(pack, fields);
    fields.take(static_cast<Types::u32>(pack.essenceContainers.size()));
    fields.take(static_cast<Types::u32>(KLV::Key::length));
    for (const Types::UniversalLabel& label : pack.essenceContainers) {
        fields.take(label);
    }
}

} // namespace Corvid::mxf
