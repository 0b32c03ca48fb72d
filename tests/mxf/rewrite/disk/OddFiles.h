#pragma once

#include "tests/mxf/rewrite/ObjectMetadata.h"
#include "tests/support/MxfBuilder.h"

#include <algorithm>
#include <numeric>
#include <ostream>

/// Files that are not like most others, for edits in place and growth.
namespace Corvid::Testing::OddFiles {

inline const Bytes essence = klv(essenceKey(), repeat(0xEE, 5000));
inline const Bytes index = klv(indexSegmentKey(), repeat(0xCC, 300));
inline const Bytes metadata = join({smallMetadata(), fill(100)});

/// Fill up to the next multiple of a size.
inline Bytes fillUp(std::size_t size, std::size_t grid) {
    constexpr std::size_t smallest = 20;
    const std::size_t missing = (grid - size % grid) % grid;
    return missing == 0         ? Bytes()
           : missing < smallest ? fill(missing + grid - smallest)
                                : fill(missing - smallest);
}

/// A partition on the grid of its KAG, and as long as a multiple of the grid of the whole file.
inline PartitionSpec onGrid(PartitionSpec spec, std::uint32_t kagSize, const Bytes& behind,
                            std::size_t grid) {
    constexpr std::size_t packSize = 16 + 4 + 88;
    const std::size_t own = std::max<std::size_t>(kagSize, 1);
    spec.kagSize = kagSize;
    spec.behindPack = fillUp(packSize, own);
    std::size_t size = packSize + spec.behindPack.size();
    if (!spec.metadata.empty()) {
        spec.metadata = join({spec.metadata, fillUp(size + spec.metadata.size(), own)});
        size += spec.metadata.size();
    }
    spec.behindMetadata = join({behind, fillUp(size + behind.size(), grid)});
    return spec;
}

/// Header, two bodies and a footer of these KAG sizes.
inline MxfBuilder ofKags(std::uint32_t header, std::uint32_t body, std::uint32_t footer) {
    const std::size_t grid =
        std::lcm(std::lcm(std::max(header, 1U), std::max(body, 1U)), std::max(footer, 1U));
    return MxfBuilder()
        .add(onGrid(headerPartition(metadata), header, {}, grid))
        .add(onGrid(bodyPartition(), body, essence, grid))
        .add(onGrid(bodyPartition(), body, essence, grid))
        .add(onGrid(footerPartition(metadata), footer, index, grid))
        .withRandomIndexPack();
}

struct OddFile {
    const char* name;
    MxfBuilder (*file)();
    std::vector<std::size_t> copies; ///< numbers of the partitions with metadata
    std::uint64_t step = 1;          ///< of growth: the least common multiple of the KAG sizes
};
inline void PrintTo(const OddFile& each, std::ostream* out) { *out << each.name; }

inline const OddFile oddFiles[] = {
    {"Kag0", [] { return ofKags(0, 0, 0); }, {0, 3}},
    {"Kag1", [] { return ofKags(1, 1, 1); }, {0, 3}},
    {"Kag256", [] { return ofKags(256, 256, 256); }, {0, 3}, 256},
    {"Kag512", [] { return ofKags(512, 512, 512); }, {0, 3}, 512},
    {"MixedKags", [] { return ofKags(512, 0, 384); }, {0, 3}, 1536},
    {"MixedLargeKags", [] { return ofKags(256, 131072, 512); }, {0, 3}, 131072},
    {"RunIn", [] { return ofKags(256, 256, 256).runIn(repeat(0x42, 1000)); }, {0, 3}, 256},
    {"EssenceAndIndexInTheHeaderPartition",
     [] {
         return MxfBuilder()
             .add(onGrid(headerPartition(metadata), 512, join({index, essence}), 512))
             .add(footerPartition(metadata))
             .withRandomIndexPack();
     },
     {0, 1},
     512},
    {"GenericStreamPartition",
     [] {
         PartitionSpec stream = onGrid(bodyPartition(), 512, essence, 512);
         stream.status = 0x11;
         return MxfBuilder()
             .add(onGrid(headerPartition(metadata), 512, essence, 512))
             .add(stream)
             .add(footerPartition(metadata))
             .withRandomIndexPack();
     },
     {0, 2},
     512},
    {"NoRandomIndexPack",
     [] {
         return MxfBuilder()
             .add(onGrid(headerPartition(metadata), 512, essence, 512))
             .add(footerPartition(metadata));
     },
     {0, 1},
     512},
    {"FooterWithoutMetadata",
     [] {
         PartitionSpec footer = footerPartition();
         footer.behindMetadata = index;
         return MxfBuilder()
             .add(onGrid(headerPartition(metadata), 512, essence, 512))
             .add(footer)
             .withRandomIndexPack();
     },
     {0},
     512},
    {"OpenHeader",
     [] {
         PartitionSpec header = onGrid(headerPartition(metadata), 512, essence, 512);
         header.status = 1;
         header.footerPartition = 0;
         return MxfBuilder().add(header).add(footerPartition(metadata)).withRandomIndexPack();
     },
     {0, 1},
     512},
    {"ObjectDirectory",
     [] {
         constexpr std::size_t begin = 20 + 88; // after the pack
         PartitionSpec header = headerPartition(objectMetadata(begin));
         header.behindMetadata = essence;
         return MxfBuilder().add(header).add(footerPartition()).withRandomIndexPack();
     },
     {0}},
    {"FragmentedAndSparse",
     [] {
         const Bytes hole = klv(essenceKey(), Bytes(300000));
         const Bytes data = klv(essenceKey(), repeat(0xEE, 100000));
         return MxfBuilder()
             .add(onGrid(headerPartition(metadata), 512, join({hole, data}), 512))
             .add(onGrid(bodyPartition(), 512, join({data, hole}), 512))
             .add(footerPartition(metadata))
             .withRandomIndexPack();
     },
     {0, 2},
     512},
};

} // namespace Corvid::Testing::OddFiles
