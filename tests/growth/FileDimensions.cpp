#include "tests/growth/Dimension.h"
#include "tests/growth/MetadataText.h"

namespace Corvid::Testing {

namespace {

/// The same bytes so many times, one after the other.
Bytes times(std::size_t n, const Bytes& bytes) {
    Bytes result;
    result.reserve(n * bytes.size());
    for (std::size_t i = 0; i != n; ++i) {
        result.insert(result.end(), bytes.begin(), bytes.end());
    }
    return result;
}

std::string fillAmongSets(std::size_t n) { return MetadataText().add(times(n, fill(4))).file(); }

std::string fillBeforePrimer(std::size_t n) {
    PartitionSpec partition = headerPartition();
    partition.behindPack = times(n, fill(4));
    return asText(MxfBuilder().add(std::move(partition)).build());
}

std::string primerEntries(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        const auto number = static_cast<unsigned>(i);
        text.primerEntry(0x8000 + number, unknownLabel(number));
    }
    return text.file();
}

std::string primerEntriesOfOneTag(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.primerEntry(0x8000, unknownLabel(static_cast<unsigned>(i)));
    }
    return text.file();
}

std::string primerEntriesOfOneLabel(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.primerEntry(0x8000 + static_cast<unsigned>(i), standardLabels().back().second);
    }
    return text.file();
}

std::string primerPacks(std::size_t n) {
    return MetadataText().add(times(n, standardPrimer())).file();
}

std::string essenceContainers(std::size_t n) {
    PartitionSpec partition = headerPartition();
    for (std::size_t i = 0; i != n; ++i) {
        partition.essenceContainers.push_back(
            join({hex("060e2b34 04010102 0d010301"), number(i, 4)}));
    }
    return asText(MxfBuilder().add(std::move(partition)).build());
}

/// A file of so many partitions, in one go: each knows its place without asking the others.
MxfBuilder partitionsOf(std::size_t n, const Bytes& metadata) {
    constexpr std::size_t packSize = 16 + 4 + 88;
    MxfBuilder builder;
    std::size_t offset = 0;
    std::size_t previous = 0;
    for (std::size_t i = 0; i != n; ++i) {
        PartitionSpec partition = i == 0 ? headerPartition() : bodyPartition(metadata);
        if (i + 1 == n) {
            partition = footerPartition(metadata);
        }
        partition.thisPartition = offset;
        partition.previousPartition = previous;
        previous = offset;
        offset += packSize + partition.metadata.size();
        builder.add(std::move(partition));
    }
    return builder;
}

std::string partitionsInAChain(std::size_t n) { return asText(partitionsOf(n, {}).build()); }

std::string partitionsInThePack(std::size_t n) {
    return asText(partitionsOf(n, {}).withRandomIndexPack().build());
}

std::string partitionsWithMetadata(std::size_t n) {
    return asText(partitionsOf(n, smallMetadata()).withRandomIndexPack().build());
}

/// Each says that its metadata is twice as long as it is.
std::string partitionsThatClaimMore(std::size_t n) {
    MxfBuilder builder;
    for (std::size_t i = 0; i != n; ++i) {
        PartitionSpec partition = i == 0 ? headerPartition() : bodyPartition(smallMetadata());
        partition.headerByteCount = std::uint64_t{1} << 40;
        partition.status = 1;
        builder.add(std::move(partition));
    }
    return asText(builder.withRandomIndexPack().build());
}

std::string packEntries(std::size_t n, std::uint64_t step) {
    std::vector<std::uint64_t> offsets{0};
    for (std::size_t i = 0; i != n; ++i) {
        offsets.push_back(step * (i + 1));
    }
    return asText(MxfBuilder().add(headerPartition()).withRandomIndexPack(offsets).build());
}

std::string packEntriesToNothing(std::size_t n) { return packEntries(n, 1); }
std::string packEntriesToOnePartition(std::size_t n) { return packEntries(n, 0); }
std::string packEntriesPastTheEnd(std::size_t n) { return packEntries(n, 1 << 20); }

std::string essenceWithoutAPack(std::size_t n) {
    PartitionSpec partition = headerPartition();
    partition.behindMetadata = times(n, klv(essenceKey(), Bytes(8)));
    partition.status = 1;
    return asText(MxfBuilder().add(std::move(partition)).build());
}

std::string runIn(std::size_t n) {
    return asText(MxfBuilder().runIn(Bytes(n, 7)).add(headerPartition()).build());
}

std::string smallFile(std::size_t) {
    return asText(MxfBuilder().add(headerPartition()).withRandomIndexPack().build());
}

} // namespace

std::vector<Dimension> fileDimensions() {
    constexpr auto mxf = InputKind::mxf;
    return {
        {"fill among the sets", mxf, 256, fillAmongSets},
        {"fill before the primer pack", mxf, 256, fillBeforePrimer},
        {"primer entries that nothing uses", mxf, 1024, primerEntries},
        {"primer entries with one tag", mxf, 1024, primerEntriesOfOneTag},
        {"primer entries with one label", mxf, 1024, primerEntriesOfOneLabel},
        {"primer packs", mxf, 64, primerPacks},
        {"essence containers of a partition pack", mxf, 256, essenceContainers, 4096},
        {"partitions in a chain", mxf, 32, partitionsInAChain},
        {"partitions in a random index pack", mxf, 32, partitionsInThePack},
        {"partitions with metadata", mxf, 32, partitionsWithMetadata},
        {"partitions that claim more bytes", mxf, 32, partitionsThatClaimMore},
        {"random index entries to nothing", mxf, 128, packEntriesToNothing},
        {"random index entries to one partition", mxf, 128, packEntriesToOnePartition},
        {"random index entries past the end", mxf, 128, packEntriesPastTheEnd},
        {"KLVs that are searched for partitions", mxf, 256, essenceWithoutAPack},
        {"bytes of a run-in", mxf, 8192, runIn, 65535},
        {"files on the command line", InputKind::files, 256, smallFile},
    };
}

} // namespace Corvid::Testing
