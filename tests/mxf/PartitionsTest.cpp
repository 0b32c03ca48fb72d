#include "host/mxf/Partitions.h"

#include "tests/mxf/ReadBack.h"

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::ReadBack;

MxfBuilder threePartitions() {
    return MxfBuilder()
        .add(Testing::headerPartition())
        .add(Testing::bodyPartition())
        .add(Testing::footerPartition());
}

std::vector<std::uint64_t> offsetsIn(ReadBack& back) {
    std::vector<std::uint64_t> offsets;
    for (const Partition& partition : back.file.partitions()) {
        offsets.push_back(partition.offset());
    }
    return offsets;
}

std::vector<std::uint64_t> threeOffsets(const MxfBuilder& builder, std::uint64_t runIn = 0) {
    return {runIn, builder.offsetOf(1) + runIn, builder.offsetOf(2) + runIn};
}

TEST(PartitionPack, tellsItsFields) {
    PartitionSpec spec = Testing::headerPartition();
    spec.status = 3;
    spec.bodySid = 5;
    spec.essenceContainers = {Testing::hex("06.0e.2b.34.04.01.01.01.0d.01.03.01.02.04.60.01"),
                              Testing::uuid(9)};
    ReadBack back(MxfBuilder().add(spec));
    const PartitionPack& pack = back.file.partitions()[0].pack;
    EXPECT_EQ(pack.kind, PartitionKind::header);
    EXPECT_EQ(pack.status, PartitionStatus::openComplete);
    EXPECT_TRUE(pack.isComplete());
    EXPECT_FALSE(pack.isClosed());
    EXPECT_EQ(pack.majorVersion, 1);
    EXPECT_EQ(pack.minorVersion, 3);
    EXPECT_EQ(pack.kagSize, 1U);
    EXPECT_EQ(pack.headerByteCount, spec.metadata.size());
    EXPECT_EQ(pack.bodySid, 5U);
    EXPECT_EQ(Platform::toUtf8(pack.operationalPattern.toString(Types::dottedHexadecimal)),
              "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00");
    ASSERT_EQ(pack.essenceContainers.size(), 2U);
    EXPECT_EQ(pack.essenceContainers[1][15], 9);
}

TEST(PartitionPack, takesOnlyTheEssenceContainersThatAreThere) {
    PartitionSpec spec = Testing::headerPartition();
    spec.essenceContainers = {Testing::uuid(9)};
    spec.essenceContainerCount = 0xFFFFFFFF;
    ReadBack back(MxfBuilder().add(spec));
    EXPECT_EQ(back.file.partitions()[0].pack.essenceContainers.size(), 1U);
    EXPECT_EQ(back.metadata().size(), 2U);
}

TEST(PartitionPack, takesNoEssenceContainersFromTheNextPartition) {
    PartitionSpec spec = Testing::bodyPartition();
    spec.essenceContainers = {Testing::uuid(9)};
    spec.essenceContainerCount = 0xFFFFFFFF;
    spec.packLength = 1 << 20;
    MxfBuilder builder;
    builder.add(Testing::headerPartition()).add(spec).add(Testing::footerPartition());
    ReadBack back(builder);
    ASSERT_EQ(offsetsIn(back), threeOffsets(builder));
    EXPECT_EQ(back.file.partitions()[1].pack.essenceContainers.size(), 1U);
    EXPECT_EQ(back.file.partitions()[1].end, builder.offsetOf(2));
}

TEST(PartitionPack, isWrittenAsItWasRead) {
    PartitionSpec spec = Testing::bodyPartition();
    spec.status = 1;
    spec.bodySid = 5;
    spec.thisPartition = 0x0102030405060708;
    spec.previousPartition = 0x1112131415161718;
    spec.footerPartition = 0x2122232425262728;
    spec.headerByteCount = 0x3132333435363738;
    spec.essenceContainers = {Testing::uuid(9), Testing::uuid(8)};
    const Bytes bytes = MxfBuilder().add(spec).build();
    const KLV::Key key(bytes.data());
    constexpr std::size_t size = partitionPackHead + 2 * 16;
    DataIO::Memory::MemoryDataSink sink;
    const PartitionPack pack = parsePartitionPack(key, {bytes.data() + 20, size});
    serialize(pack, sink);
    ASSERT_EQ(sink.serializedSize(), 20 + size);
    EXPECT_EQ(serializedSize(pack), 20 + size);
    EXPECT_TRUE(
        std::equal(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize(), bytes.begin()));
}

struct Shape {
    const char* name;
    unsigned octets;
    std::size_t runIn;
    bool withIndex;
};
void PrintTo(const Shape& shape, std::ostream* out) { *out << shape.name; }

class FindsPartitions : public ::testing::TestWithParam<Shape> {};

TEST_P(FindsPartitions, inTheOrderOfTheFile) {
    PartitionSpec header = Testing::headerPartition();
    header.packOctets = GetParam().octets;
    MxfBuilder builder = MxfBuilder()
                             .runIn(Testing::repeat(0x06, GetParam().runIn))
                             .add(header)
                             .add(Testing::bodyPartition())
                             .add(Testing::footerPartition());
    if (GetParam().withIndex) {
        builder.withRandomIndexPack();
    }
    ReadBack back(builder);
    EXPECT_EQ(back.file.runIn(), GetParam().runIn);
    EXPECT_EQ(offsetsIn(back), threeOffsets(builder, GetParam().runIn));
    EXPECT_EQ(back.warnings.lines(), "");
    EXPECT_EQ(back.metadata().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(, FindsPartitions,
                         ::testing::Values(Shape{"ByIndex", 4, 0, true},
                                           Shape{"ByChain", 4, 0, false},
                                           Shape{"ShortLength", 1, 0, true},
                                           Shape{"LongLength", 9, 0, true},
                                           Shape{"BehindARunIn", 4, 100, true},
                                           Shape{"BehindARunInByChain", 4, 4090, false},
                                           Shape{"BehindTheLongestRunIn", 4, 65535, true}),
                         Testing::nameOfCase<Shape>);

TEST(Partitions, areNotLookedForBehindALongerRunIn) {
    const MxfBuilder builder = threePartitions().runIn(Testing::repeat(0, 65536));
    EXPECT_NE(Testing::messageOf([&] { ReadBack back(builder); }).find("not an MXF file"),
              std::string::npos);
}

TEST(Partitions, mayCountTheRunIn) {
    MxfBuilder builder = threePartitions().runIn(Testing::repeat(0, 100));
    builder.withRandomIndexPack({100, builder.offsetOf(1) + 100, builder.offsetOf(2) + 100});
    ReadBack back(builder);
    EXPECT_EQ(offsetsIn(back), threeOffsets(builder, 100));
    EXPECT_FALSE(back.warnings.tell("[partition-not-found]")) << back.warnings.lines();
}

TEST(Partitions, areFoundWhereTheFrontOfTheFileIsMissing) {
    for (const bool indexed : {true, false}) {
        MxfBuilder builder = threePartitions();
        if (indexed) {
            builder.withRandomIndexPack();
        }
        Bytes bytes = builder.build();
        const auto missing = static_cast<std::ptrdiff_t>(builder.offsetOf(1)) - 50;
        bytes.erase(bytes.begin(), bytes.begin() + missing);
        ReadBack back(bytes);
        EXPECT_EQ(back.file.runIn(), 0U);
        const auto& all = back.file.partitions();
        EXPECT_EQ(all.front().offset(), 50U);
        EXPECT_EQ(all.size(), 2U);
        ASSERT_EQ(back.warnings.all.size(), 1U) << back.warnings.lines();
        EXPECT_TRUE(back.warnings.tell("byte 50: the first partition is a body partition, expected "
                                       "the header partition; its ThisPartition is " +
                                       std::to_string(missing + 50) + ", so " +
                                       std::to_string(missing) +
                                       " bytes are missing before it [no-header-partition]"))
            << back.warnings.lines();
    }
}

TEST(Partitions, withoutAHeaderPartitionCountFromTheFrontThatTheFirstOneGives) {
    const MxfBuilder builder = threePartitions().withRandomIndexPack().runIn(Testing::repeat(0, 9));
    Bytes bytes = builder.build();
    bytes[9] = 0; // of the header partition's key
    ReadBack back(bytes);
    EXPECT_EQ(back.file.runIn(), 9U);
    EXPECT_EQ(back.file.partitions().size(), 2U);
    EXPECT_TRUE(back.warnings.tell("expected the header partition [no-header-partition]"))
        << back.warnings.lines();
}

TEST(Partitions, thatAFooterPointerPastTheEndTellsOfAreAWarning) {
    Bytes bytes = threePartitions().build();
    bytes.resize(threePartitions().offsetOf(1));
    ReadBack back(bytes);
    EXPECT_EQ(offsetsIn(back), std::vector<std::uint64_t>{0});
    EXPECT_TRUE(back.warnings.tell("past the end of the file")) << back.warnings.lines();
    EXPECT_EQ(back.metadata().size(), 2U);
}

struct Lie {
    const char* name;
    std::vector<std::uint64_t> index; ///< offsets in the random index pack
    const char* warning;
};
void PrintTo(const Lie& lie, std::ostream* out) { *out << lie.name; }

class LyingIndex : public ::testing::TestWithParam<Lie> {};

TEST_P(LyingIndex, givesWayToTheChain) {
    const MxfBuilder builder = threePartitions().withRandomIndexPack(GetParam().index);
    ReadBack back(builder);
    EXPECT_EQ(offsetsIn(back), threeOffsets(builder));
    EXPECT_EQ(back.warnings.all.empty(), *GetParam().warning == '\0') << back.warnings.lines();
    EXPECT_TRUE(back.warnings.all.empty() || back.warnings.tell(GetParam().warning))
        << back.warnings.lines();
}

INSTANTIATE_TEST_SUITE_P(
    , LyingIndex,
    ::testing::Values(
        Lie{"NoPartitionThere", {0, 17}, "where there is no partition pack [partition-not-found]"},
        Lie{"PastTheEnd", {0, 1 << 30}, "past the end"},
        Lie{"Greatest", {~std::uint64_t{0}}, "past the end"}, Lie{"HeaderOnly", {0, 0, 0}, ""},
        Lie{"Empty", {}, ""}),
    Testing::nameOfCase<Lie>);

TEST(Partitions, areNotFoundByAnIndexWhoseLengthLies) {
    Bytes bytes = threePartitions().withRandomIndexPack().build();
    for (std::size_t place = bytes.size() - 4; place != bytes.size(); ++place) {
        for (unsigned value = 0; value <= 0xFF; value += 5) {
            Bytes changed = bytes;
            changed[place] = static_cast<unsigned char>(value);
            ReadBack back(changed);
            EXPECT_EQ(back.file.partitions().size(), 3U);
        }
    }
}

TEST(Partitions, ofAChainThatLoopsAreFoundOnce) {
    for (const std::uint64_t previous : {std::uint64_t{0}, threePartitions().offsetOf(1),
                                         threePartitions().offsetOf(2), ~std::uint64_t{0}}) {
        PartitionSpec body = Testing::bodyPartition();
        body.previousPartition = previous;
        const MxfBuilder builder =
            MxfBuilder().add(Testing::headerPartition()).add(body).add(Testing::footerPartition());
        ReadBack back(builder);
        EXPECT_EQ(offsetsIn(back), threeOffsets(builder));
        EXPECT_EQ(back.warnings.tell("[previous-partition]"), previous != 0)
            << back.warnings.lines();
    }
}

TEST(Partitions, maySayThatTheyStandElsewhere) {
    PartitionSpec footer = Testing::footerPartition();
    footer.thisPartition = 12345;
    ReadBack back(MxfBuilder().add(Testing::headerPartition()).add(footer));
    EXPECT_EQ(back.file.partitions().size(), 2U);
    EXPECT_TRUE(back.warnings.tell("ThisPartition is 12345, expected ")) << back.warnings.lines();
}

TEST(Partitions, mayBeGenericStreams) {
    PartitionSpec stream = Testing::bodyPartition();
    stream.status = 0x11;
    stream.behindMetadata =
        Testing::klv(Testing::hex("06.0e.2b.34.01.01.01.0c.0d.01.05.09.01.00.00.00"), {1, 2, 3});
    ReadBack back(MxfBuilder().add(Testing::headerPartition()).add(stream).withRandomIndexPack());
    EXPECT_EQ(back.file.partitions()[1].pack.status, PartitionStatus::genericStream);
    EXPECT_EQ(back.metadata().size(), 2U);
    EXPECT_EQ(back.warnings.lines(), "");
}

} // namespace
} // namespace Corvid::mxf
