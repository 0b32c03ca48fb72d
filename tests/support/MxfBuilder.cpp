#include "tests/support/MxfBuilder.h"

#include <algorithm>
#include <stdexcept>

namespace Corvid::Testing {

namespace {

void append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

unsigned digit(char c) {
    const auto place = std::string_view("0123456789abcdef").find(c);
    if (place == std::string_view::npos) {
        throw std::invalid_argument("no hexadecimal digit");
    }
    return static_cast<unsigned>(place);
}

} // namespace

Bytes hex(std::string_view text) {
    Bytes bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '.' && text[i] != ' ') {
            bytes.push_back(
                static_cast<unsigned char>(digit(text.at(i)) * 16 + digit(text.at(i + 1))));
            ++i;
        }
    }
    return bytes;
}

Bytes number(std::uint64_t value, unsigned size) {
    Bytes bytes(size);
    for (unsigned i = size; i != 0; --i) {
        bytes[i - 1] = static_cast<unsigned char>(value);
        value >>= 8;
    }
    return bytes;
}

Bytes join(const std::vector<Bytes>& parts) {
    Bytes bytes;
    for (const Bytes& part : parts) {
        append(bytes, part);
    }
    return bytes;
}

Bytes repeat(unsigned char value, std::size_t count) { return Bytes(count, value); }

std::string asText(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

Bytes uuid(unsigned value) {
    return join({hex("7a000000000040008000000000 01"), number(value, 2)});
}

Bytes utf16(std::u16string_view text) {
    Bytes bytes;
    for (const char16_t unit : text) {
        append(bytes, number(unit, 2));
    }
    return bytes;
}

Bytes batch(const std::vector<Bytes>& items, std::size_t itemSize,
            std::optional<std::uint32_t> countSaid, std::optional<std::uint32_t> itemSizeSaid) {
    Bytes bytes = join({number(countSaid.value_or(static_cast<std::uint32_t>(items.size())), 4),
                        number(itemSizeSaid.value_or(static_cast<std::uint32_t>(itemSize)), 4)});
    for (const Bytes& item : items) {
        append(bytes, item);
    }
    return bytes;
}

Bytes ber(std::uint64_t value, unsigned octets) {
    return octets == 1 ? number(value, 1)
                       : join({number(0x80 + octets - 1, 1), number(value, octets - 1)});
}

Bytes klv(const Bytes& key, const Bytes& value, unsigned octets,
          std::optional<std::uint64_t> lengthSaid) {
    return join({key, ber(lengthSaid.value_or(value.size()), octets), value});
}

Bytes property(unsigned tag, const Bytes& value, std::optional<unsigned> lengthSaid) {
    return join({number(tag, 2),
                 number(lengthSaid.value_or(static_cast<unsigned>(value.size())), 2), value});
}

Bytes fill(std::size_t valueSize, unsigned char version, unsigned octets) {
    Bytes key = hex("06.0e.2b.34.01.01.01.00.03.01.02.10.01.00.00.00");
    key[7] = version;
    return klv(key, Bytes(valueSize), octets);
}

Bytes structuralKey(unsigned char number) {
    Bytes key = hex("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.00.00");
    key[14] = number;
    return key;
}

Bytes primerKey() { return hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.05.01.00"); }
Bytes indexSegmentKey() { return hex("06.0e.2b.34.02.53.01.01.0d.01.02.01.01.10.01.00"); }
Bytes essenceKey() { return hex("06.0e.2b.34.01.02.01.01.0d.01.03.01.15.01.05.01"); }
Bytes instanceUIDLabel() { return hex("06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00"); }

const std::vector<std::pair<unsigned, Bytes>>& standardLabels() {
    static const std::vector<std::pair<unsigned, Bytes>> labels = {
        {instanceUIDTag, instanceUIDLabel()},
        {0x3B02, hex("06.0e.2b.34.01.01.01.02.07.02.01.10.02.04.00.00")},
        {0x3B03, hex("06.0e.2b.34.01.01.01.02.06.01.01.04.02.01.00.00")},
        {0x3B05, hex("06.0e.2b.34.01.01.01.02.03.01.02.01.05.00.00.00")},
        {0x3B06, hex("06.0e.2b.34.01.01.01.02.06.01.01.04.06.04.00.00")},
        {0x3C01, hex("06.0e.2b.34.01.01.01.02.05.20.07.01.02.01.00.00")},
        {0x4801, hex("06.0e.2b.34.01.01.01.02.01.07.01.01.00.00.00.00")},
        {0x4802, hex("06.0e.2b.34.01.01.01.02.01.07.01.02.01.00.00.00")},
        {0x4B01, hex("06.0e.2b.34.01.01.01.02.05.30.04.05.00.00.00.00")},
    };
    return labels;
}

Bytes primer(const std::vector<std::pair<unsigned, Bytes>>& entries,
             std::optional<std::uint32_t> countSaid, std::optional<std::uint32_t> itemSizeSaid,
             unsigned octets) {
    std::vector<Bytes> items;
    for (const auto& [tag, label] : entries) {
        items.push_back(join({number(tag, 2), label}));
    }
    return klv(primerKey(), batch(items, 18, countSaid, itemSizeSaid), octets);
}

Bytes standardPrimer() { return primer(standardLabels()); }

Bytes set(const Bytes& key, unsigned instance, const std::vector<Bytes>& properties,
          unsigned octets) {
    return klv(key, join({property(instanceUIDTag, uuid(instance)), join(properties)}), octets);
}

Bytes withBerLengths(const Bytes& sets) {
    const auto numberAt = [&sets](std::size_t at, std::size_t size) {
        std::size_t value = 0;
        for (std::size_t i = 0; i != size; ++i) {
            value = value << 8 | sets[at + i];
        }
        return value;
    };
    const auto part = [&sets](std::size_t begin, std::size_t size) {
        const auto from = sets.begin() + static_cast<std::ptrdiff_t>(begin);
        return Bytes(from, from + static_cast<std::ptrdiff_t>(size));
    };
    Bytes result;
    for (std::size_t at = 0; at != sets.size();) {
        Bytes key = part(at, 16);
        key[5] = 0x13;
        const std::size_t end = at + 20 + numberAt(at + 17, 3);
        Bytes value;
        for (at += 20; at != end;) {
            const std::size_t size = numberAt(at + 2, 2);
            const unsigned octets = size < 0x80 ? 1 : size < 0x100 ? 2 : 3;
            append(value, join({part(at, 2), ber(size, octets), part(at + 4, size)}));
            at += 4 + size;
        }
        append(result, klv(key, value));
    }
    return result;
}

Bytes smallSets() {
    return join({set(structuralKey(prefaceSet), 1,
                     {property(0x3B02, hex("07e8 02 1d 0c 1e 0f 7d")),
                      property(0x3B05, hex("0103")), property(0x3B03, uuid(2))}),
                 set(structuralKey(contentStorageSet), 2)});
}

Bytes smallMetadata() { return join({standardPrimer(), smallSets()}); }

PartitionSpec headerPartition(Bytes metadata) {
    PartitionSpec partition;
    partition.metadata = std::move(metadata);
    return partition;
}

PartitionSpec bodyPartition(Bytes metadata) {
    PartitionSpec partition = headerPartition(std::move(metadata));
    partition.kind = 3;
    return partition;
}

PartitionSpec footerPartition(Bytes metadata) {
    PartitionSpec partition = headerPartition(std::move(metadata));
    partition.kind = 4;
    return partition;
}

MxfBuilder& MxfBuilder::runIn(Bytes bytes) {
    runIn_ = std::move(bytes);
    return *this;
}

MxfBuilder& MxfBuilder::add(PartitionSpec partition) {
    partitions_.push_back(std::move(partition));
    return *this;
}

MxfBuilder& MxfBuilder::withRandomIndexPack() {
    withRandomIndexPack_ = true;
    return *this;
}

MxfBuilder& MxfBuilder::withRandomIndexPack(std::vector<std::uint64_t> offsets) {
    offsetsSaid_ = std::move(offsets);
    return withRandomIndexPack();
}

std::size_t MxfBuilder::sizeOf(const PartitionSpec& partition) const {
    return 16 + partition.packOctets + 88 + 16 * partition.essenceContainers.size() +
           partition.behindPack.size() + partition.metadata.size() +
           partition.behindMetadata.size();
}

std::uint64_t MxfBuilder::offsetOf(std::size_t partition) const {
    std::uint64_t offset = 0;
    for (std::size_t i = 0; i != partition; ++i) {
        offset += sizeOf(partitions_[i]);
    }
    return offset;
}

Bytes MxfBuilder::pack(std::size_t index) const {
    const PartitionSpec& spec = partitions_[index];
    const bool hasFooter = partitions_.back().kind == 4;
    Bytes key = hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.00.00.00");
    key[13] = spec.kind;
    key[14] = spec.status;
    const std::uint64_t footer = hasFooter ? offsetOf(partitions_.size() - 1) : 0;
    const std::uint64_t previous = index == 0 ? 0 : offsetOf(index - 1);
    return klv(key,
               join({number(1, 2), number(3, 2), number(spec.kagSize, 4),
                     number(spec.thisPartition.value_or(offsetOf(index)), 8),
                     number(spec.previousPartition.value_or(previous), 8),
                     number(spec.footerPartition.value_or(footer), 8),
                     number(spec.headerByteCount.value_or(spec.metadata.size()), 8), number(0, 8),
                     number(0, 4), number(0, 8), number(spec.bodySid, 4), spec.operationalPattern,
                     batch(spec.essenceContainers, 16, spec.essenceContainerCount)}),
               spec.packOctets, spec.packLength);
}

Bytes MxfBuilder::build() const {
    Bytes file = runIn_;
    std::vector<Bytes> entries;
    for (std::size_t i = 0; i != partitions_.size(); ++i) {
        append(file, pack(i));
        append(file, partitions_[i].behindPack);
        append(file, partitions_[i].metadata);
        append(file, partitions_[i].behindMetadata);
        entries.push_back(join({number(partitions_[i].bodySid, 4), number(offsetOf(i), 8)}));
    }
    if (offsetsSaid_) {
        entries.clear();
        for (const std::uint64_t offset : *offsetsSaid_) {
            entries.push_back(join({number(0, 4), number(offset, 8)}));
        }
    }
    if (withRandomIndexPack_) {
        Bytes value;
        for (const Bytes& entry : entries) {
            append(value, entry);
        }
        append(value, number(16 + 4 + value.size() + 4, 4));
        append(file, klv(hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.11.01.00"), value));
    }
    return file;
}

} // namespace Corvid::Testing
