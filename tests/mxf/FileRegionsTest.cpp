#include "host/mxf/layout/FileRegions.h"

#include "tests/mxf/ReadBack.h"

#include <gmock/gmock.h>

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using ::testing::ElementsAre;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::ReadBack;

Templates::vector<FileRegion> regionsOf(ReadBack& back) {
    back.metadata();
    DataIO::MemorySource source(back.bytes.data(), back.bytes.size());
    return fileRegions(source, back.file.partitions(), back.read);
}

/// "pack 0", "essence 1", "randomIndex"
std::vector<std::string> namesOf(const Templates::vector<FileRegion>& regions) {
    std::vector<std::string> names;
    for (const FileRegion& region : regions) {
        names.push_back(nameOf(region.kind) +
                        (region.partition ? " " + std::to_string(*region.partition) : ""));
    }
    return names;
}

void expectNoGap(const Templates::vector<FileRegion>& regions, std::uint64_t size) {
    std::uint64_t end = 0;
    for (const FileRegion& region : regions) {
        EXPECT_EQ(region.begin, end);
        EXPECT_GT(region.end, region.begin);
        end = region.end;
    }
    EXPECT_EQ(end, size);
}

PartitionSpec withEssence(PartitionSpec spec) {
    spec.bodySid = 1;
    spec.behindMetadata = Testing::klv(Testing::essenceKey(), Testing::repeat(7, 300));
    return spec;
}

struct Case {
    const char* name;
    MxfBuilder file;
    std::vector<std::string> regions;
};
void PrintTo(const Case& each, std::ostream* out) { *out << each.name; }

class Regions : public ::testing::TestWithParam<Case> {};

TEST_P(Regions, sayWhatEachByteIs) {
    ReadBack back(GetParam().file);
    const auto regions = regionsOf(back);
    EXPECT_EQ(namesOf(regions), GetParam().regions);
    expectNoGap(regions, back.bytes.size());
}

PartitionSpec afterFill() {
    PartitionSpec spec = Testing::headerPartition();
    spec.behindPack = Testing::fill(40);
    return spec;
}

PartitionSpec genericStream() {
    PartitionSpec spec = withEssence(Testing::bodyPartition());
    spec.status = 0x11;
    return spec;
}

PartitionSpec withRest(Bytes rest) {
    PartitionSpec spec = Testing::footerPartition();
    spec.behindMetadata = std::move(rest);
    return spec;
}

PartitionSpec withByteCount(std::uint64_t count) {
    PartitionSpec spec = Testing::bodyPartition(Testing::smallMetadata());
    spec.headerByteCount = count;
    return spec;
}

INSTANTIATE_TEST_SUITE_P(
    , Regions,
    ::testing::Values(
        Case{"HeaderOnly", MxfBuilder().add(Testing::headerPartition()), {"pack 0", "metadata 0"}},
        Case{"RunIn",
             MxfBuilder().runIn(Testing::repeat(0, 50)).add(Testing::headerPartition()),
             {"runIn", "pack 0", "metadata 0"}},
        Case{"FillBeforeThePrimer",
             MxfBuilder().add(afterFill()),
             {"pack 0", "fill 0", "metadata 0"}},
        Case{
            "WholeClip",
            MxfBuilder()
                .add(Testing::headerPartition())
                .add(withEssence(Testing::bodyPartition()))
                .add(Testing::footerPartition(Testing::smallMetadata()))
                .withRandomIndexPack(),
            {"pack 0", "metadata 0", "pack 1", "essence 1", "pack 2", "metadata 2", "randomIndex"}},
        Case{"GenericStream",
             MxfBuilder().add(Testing::headerPartition()).add(genericStream()),
             {"pack 0", "metadata 0", "pack 1", "stream 1"}},
        Case{"FillAtTheEnd",
             MxfBuilder().add(Testing::headerPartition()).add(withRest(Testing::fill(30))),
             {"pack 0", "metadata 0", "pack 1", "fill 1"}},
        Case{"SomethingElse",
             MxfBuilder().add(Testing::headerPartition()).add(withRest(Testing::repeat(9, 30))),
             {"pack 0", "metadata 0", "pack 1", "other 1"}},
        Case{"ByteCountBeyondTheFile",
             MxfBuilder().add(Testing::headerPartition()).add(withByteCount(1U << 30U)),
             {"pack 0", "metadata 0", "pack 1", "metadata 1"}},
        Case{"GreatestByteCount",
             MxfBuilder().add(Testing::headerPartition()).add(withByteCount(~std::uint64_t{0})),
             {"pack 0", "metadata 0", "pack 1", "metadata 1"}}),
    [](const auto& each) { return each.param.name; });

TEST(FileRegions, ofIndexTablesAreAsLongAsThePackSays) {
    ReadBack back(MxfBuilder().add(Testing::headerPartition()));
    back.metadata();
    Bytes bytes = back.bytes;
    const Bytes index = Testing::klv(Testing::indexSegmentKey(), Testing::repeat(0, 60));
    bytes.insert(bytes.end(), index.begin(), index.end());
    Partitions partitions = back.file.partitions();
    partitions.front().pack.indexByteCount = index.size();
    DataIO::MemorySource source(bytes.data(), bytes.size());
    const auto regions = fileRegions(source, partitions, back.read);
    EXPECT_THAT(namesOf(regions), ElementsAre("pack 0", "metadata 0", "index 0"));
    EXPECT_EQ(regions.back().end - regions.back().begin, index.size());
}

TEST(FileRegions, endWhereACutFileEnds) {
    const Bytes whole = MxfBuilder()
                            .add(Testing::headerPartition())
                            .add(withEssence(Testing::bodyPartition()))
                            .build();
    for (std::size_t size = 200; size < whole.size(); size += 7) {
        ReadBack back(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        Templates::vector<FileRegion> regions;
        try {
            regions = regionsOf(back);
        } catch (const Exceptions::BaseException&) {
            continue; // there is no metadata left
        }
        expectNoGap(regions, size);
    }
}

} // namespace
} // namespace Corvid::mxf
