#include "host/mxf/HeaderMetadataReader.h"

#include "tests/mxf/ReadBack.h"

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using Testing::fill;
using Testing::join;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::ReadBack;

const Bytes essence = Testing::klv(Testing::essenceKey(), Testing::repeat(0xEE, 300));

/// A header partition with essence after its metadata.
PartitionSpec header(const Bytes& metadata = Testing::smallMetadata()) {
    PartitionSpec spec = Testing::headerPartition(metadata);
    spec.behindMetadata = essence;
    return spec;
}

struct Case {
    const char* name;
    Bytes metadata;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Fill : public ::testing::TestWithParam<Case> {};

TEST_P(Fill, isPassedOver) {
    ReadBack back(MxfBuilder().add(header(GetParam().metadata)));
    EXPECT_EQ(back.metadata().size(), 2U);
    EXPECT_EQ(back.read.metadata->darkBegin(), back.read.metadata->darkEnd());
    EXPECT_TRUE(back.read.isWhole);
    EXPECT_EQ(back.read.end - back.read.begin, GetParam().metadata.size());
    EXPECT_EQ(back.warnings.lines(), "");
}

const Bytes content = Testing::set(Testing::structuralKey(Testing::contentStorageSet), 2);
const Bytes preface = Testing::set(Testing::structuralKey(Testing::prefaceSet), 1);

INSTANTIATE_TEST_SUITE_P(
    , Fill,
    ::testing::Values(
        Case{"BehindThePrimer", join({Testing::standardPrimer(), fill(50), preface, content})},
        Case{"AmongTheSets", join({Testing::standardPrimer(), content, fill(50), preface})},
        Case{"BehindTheSets", join({Testing::smallMetadata(), fill(50)})},
        Case{"OfVersionOne",
             join({Testing::standardPrimer(), fill(5, 1), preface, fill(5, 1), content})},
        Case{"OfNoLength",
             join({Testing::standardPrimer(), fill(0, 2, 1), fill(0), preface, content})},
        Case{"Long",
             join({Testing::standardPrimer(), fill(200'000), preface, content, fill(70'000)})},
        Case{"OfNineOctets", join({Testing::standardPrimer(), fill(9, 2, 9), preface, content})}),
    Testing::nameOfCase<Case>);

TEST(HeaderMetadata, beginsBehindTheFillOfItsPartitionPack) {
    PartitionSpec spec = header();
    spec.behindPack = join({fill(3), fill(1000, 1)});
    ReadBack back(MxfBuilder().add(spec));
    EXPECT_EQ(back.metadata().size(), 2U);
    EXPECT_EQ(back.read.begin, 16 + 4 + 88 + spec.behindPack.size());
    EXPECT_EQ(back.warnings.lines(), "");
}

TEST(HeaderMetadata, keepsTheEntriesOfThePrimerPack) {
    ReadBack back(MxfBuilder().add(header()));
    auto& primer = back.metadata().partitionDictionary();
    EXPECT_EQ(static_cast<std::size_t>(primer.end() - primer.begin()),
              Testing::standardLabels().size());
}

struct ByteCount {
    const char* name;
    std::int64_t difference; ///< from the true one
    const char* warning;
    bool isWhole;
};
void PrintTo(const ByteCount& c, std::ostream* out) { *out << c.name; }

class LyingByteCount : public ::testing::TestWithParam<ByteCount> {};

TEST_P(LyingByteCount, losesNoSet) {
    const auto size = static_cast<std::int64_t>(Testing::smallMetadata().size());
    PartitionSpec spec = header();
    spec.headerByteCount = static_cast<std::uint64_t>(size + GetParam().difference);
    ReadBack back(MxfBuilder().add(spec));
    EXPECT_EQ(back.metadata().size(), 2U);
    EXPECT_EQ(back.read.metadata->darkBegin(), back.read.metadata->darkEnd());
    EXPECT_EQ(back.read.isWhole, GetParam().isWhole);
    EXPECT_EQ(back.read.end - back.read.begin, static_cast<std::uint64_t>(size));
    EXPECT_TRUE(back.warnings.tell(GetParam().warning)) << back.warnings.lines();
}

const auto smallSize = static_cast<std::int64_t>(Testing::smallMetadata().size());

INSTANTIATE_TEST_SUITE_P(
    , LyingByteCount,
    ::testing::Values(
        ByteCount{"Zero", -smallSize, "HeaderByteCount is 0, but header metadata follows", true},
        ByteCount{"EndsInsideASet", -5, "ends inside a set", true},
        ByteCount{"EndsBeforeASet", -static_cast<std::int64_t>(content.size()),
                  "a set follows after the end", true},
        ByteCount{"EndsInTheEssence", 30, "before the end that HeaderByteCount gives", true},
        ByteCount{"EndsPastTheFile", 1 << 20, "past the end of the file", true},
        ByteCount{"IsNegative", -smallSize - 1, "past the end of the file", true}),
    Testing::nameOfCase<ByteCount>);

struct Behind {
    const char* name;
    Bytes bytes;
};
void PrintTo(const Behind& c, std::ostream* out) { *out << c.name; }

class Unbounded : public ::testing::TestWithParam<Behind> {};

TEST_P(Unbounded, endsAtWhatCannotBeMetadata) {
    PartitionSpec spec = header();
    spec.headerByteCount = 0;
    spec.behindMetadata = join({GetParam().bytes, Testing::smallSets()});
    ReadBack back(MxfBuilder().add(spec));
    EXPECT_EQ(back.metadata().size(), 2U);
    EXPECT_EQ(back.read.metadata->darkBegin(), back.read.metadata->darkEnd());
}

INSTANTIATE_TEST_SUITE_P(
    , Unbounded,
    ::testing::Values(
        Behind{"Essence", essence},
        Behind{
            "PrivateEssence",
            Testing::klv(Testing::hex("06.0e.2b.34.01.02.01.01.0e.04.03.01.15.01.05.01"), {1, 2})},
        Behind{
            "SystemItem",
            Testing::klv(Testing::hex("06.0e.2b.34.02.05.01.01.0d.01.03.01.04.01.01.00"), {1, 2})},
        Behind{"IndexTable", Testing::klv(Testing::indexSegmentKey(), {1, 2, 3})},
        Behind{"Partition", MxfBuilder().add(Testing::bodyPartition()).build()}),
    Testing::nameOfCase<Behind>);

TEST(HeaderMetadata, resolvesReferencesToSetsThatAreReadLater) {
    // Each set refers to the other, so one of them comes later.
    const Bytes name = Testing::structuralKey(Testing::contentStorageSet);
    const Bytes owner = Testing::set(Testing::structuralKey(Testing::prefaceSet), 1,
                                     {Testing::property(0x3B03, Testing::uuid(2))});
    const Bytes target = Testing::set(name, 2, {Testing::property(0x3B03, Testing::uuid(1))});
    for (const auto& sets : {join({owner, target}), join({target, owner})}) {
        ReadBack back(MxfBuilder().add(header(join({Testing::standardPrimer(), sets}))));
        Metadata::PartitionMetadata& metadata = back.metadata();
        for (const Metadata::MetadataSet* set : metadata) {
            const auto number = set->instanceUID()[15];
            const auto found = metadata.resolve(Types::WeakReference(
                Types::UUID(Types::ByteView{Testing::uuid(number == 1 ? 2 : 1).data(), 16})));
            ASSERT_EQ(found.size(), 1U);
            EXPECT_NE(&found.front(), set);
        }
    }
}

TEST(HeaderMetadata, withoutPrimerPackIsReadByStaticTags) {
    ReadBack back(MxfBuilder().add(header(Testing::smallSets())));
    auto& metadata = back.metadata();
    EXPECT_EQ(metadata.size(), 2U);
    EXPECT_TRUE((*metadata.begin())->hasInstanceUID());
    ASSERT_EQ(back.warnings.all.size(), 1U) << back.warnings.lines();
    EXPECT_EQ(back.warnings.all[0].kind, &WarningKinds::noPrimerPack);
}

TEST(HeaderMetadata, withSeveralPrefacesIsReadWithAWarningForEachButTheFirst) {
    const Bytes another = Testing::set(Testing::structuralKey(Testing::prefaceSet), 77);
    ReadBack back(MxfBuilder().add(header(join({Testing::smallMetadata(), another, another}))));
    EXPECT_EQ(back.metadata().size(), 4U);
    EXPECT_TRUE(back.read.isWhole);
    std::vector<std::uint64_t> places;
    for (const Warning& warning : back.warnings.all) {
        if (warning.kind == &WarningKinds::severalPrefaces) {
            places.push_back(*warning.offset);
        }
    }
    EXPECT_EQ(places, (std::vector<std::uint64_t>{back.read.end - 2 * another.size(),
                                                  back.read.end - another.size()}));
}

TEST(HeaderMetadata, thatEndsWithTheFileBetweenTwoSetsIsCutOffThere) {
    ReadBack whole(MxfBuilder().add(Testing::headerPartition()));
    whole.metadata();
    EXPECT_EQ(whole.read.cutOffAt, std::nullopt);
    Bytes bytes = whole.bytes;
    bytes.resize(bytes.size() - content.size());
    ReadBack back(bytes);
    back.metadata();
    EXPECT_FALSE(back.read.isWhole);
    EXPECT_EQ(back.read.cutOffAt, bytes.size());
    EXPECT_TRUE(back.warnings.tell("[header-byte-count]")) << back.warnings.lines();
}

TEST(HeaderMetadata, withoutPrefaceIsKept) {
    ReadBack back(MxfBuilder().add(header(join({Testing::standardPrimer(), content}))));
    EXPECT_EQ(back.metadata().size(), 1U);
    EXPECT_FALSE(back.read.isWhole);
    EXPECT_TRUE(back.warnings.tell("no Preface")) << back.warnings.lines();
}

TEST(HeaderMetadata, keepsPrivateTripletsAsDarkSetsInPlace) {
    const Bytes privateKey = Testing::hex("a0.24.00.60.94.eb.75.cb.ce.2a.ca.4d.51.ab.11.d3");
    const Bytes value = {9, 8, 7};
    ReadBack back(MxfBuilder().add(
        header(join({Testing::smallMetadata(), Testing::klv(privateKey, value, 5)}))));
    auto& metadata = back.metadata();
    ASSERT_NE(metadata.darkBegin(), metadata.darkEnd());
    const Metadata::DarkMetadataSet& dark = **metadata.darkBegin();
    EXPECT_EQ(dark.key(), KLV::Key(privateKey.data()));
    EXPECT_EQ(dark.berLength(), 5);
    EXPECT_EQ(Bytes(dark.value()->begin(), dark.value()->end()), value);
    EXPECT_EQ(back.warnings.lines(), "");
}

TEST(HeaderMetadata, tellsOfTwoSetsWithOneInstanceUID) {
    const Bytes twin = Testing::set(Testing::structuralKey(Testing::identificationSet), 2);
    ReadBack back(MxfBuilder().add(header(join({Testing::smallMetadata(), twin}))));
    EXPECT_EQ(back.metadata().size(), 3U);
    const auto offset = back.read.end - twin.size();
    EXPECT_TRUE(back.warnings.tell("byte " + std::to_string(offset) +
                                   ": set Identification: has the same InstanceUID"))
        << back.warnings.lines();
}

TEST(HeaderMetadata, isKeptUpToALengthThatPointsPastTheEnd) {
    for (const std::uint64_t length :
         {std::uint64_t{1000}, std::uint64_t{1} << 40, ~std::uint64_t{0}}) {
        const Bytes lie =
            Testing::klv(Testing::structuralKey(Testing::identificationSet), {1, 2, 3}, 9, length);
        ReadBack back(MxfBuilder().add(header(join({Testing::smallMetadata(), lie}))));
        EXPECT_EQ(back.metadata().size(), 2U);
        EXPECT_FALSE(back.read.isWhole);
        EXPECT_TRUE(back.warnings.tell("reaches past the end")) << back.warnings.lines();
        EXPECT_EQ(back.read.cutOffAt, back.read.begin + Testing::smallMetadata().size());
    }
}

/// A length that reaches into the next partition.
struct Reach {
    const char* name;
    Bytes metadata;
    std::size_t sets; ///< that are read
    const char* warning;
};
void PrintTo(const Reach& c, std::ostream* out) { *out << c.name; }

class LengthIntoTheNextPartition : public ::testing::TestWithParam<Reach> {};

TEST_P(LengthIntoTheNextPartition, takesNothingOfIt) {
    PartitionSpec spec = Testing::headerPartition(GetParam().metadata);
    spec.headerByteCount = spec.metadata.size() + 200;
    ReadBack back(MxfBuilder().add(spec).add(Testing::footerPartition(Testing::smallMetadata())));
    ASSERT_EQ(back.file.partitions().size(), 2U);
    EXPECT_EQ(back.metadata(PartitionChoice::numbered(0)).size(), GetParam().sets);
    EXPECT_EQ(back.read.metadata->darkBegin(), back.read.metadata->darkEnd());
    EXPECT_TRUE(back.warnings.tell(GetParam().warning)) << back.warnings.lines();
}

Bytes fillKey() {
    const Bytes fill = Testing::fill(0);
    return Bytes(fill.begin(), fill.begin() + 16);
}

const auto farther = [](const Bytes& key) { return Testing::klv(key, {}, 4, 250); };

INSTANTIATE_TEST_SUITE_P(
    , LengthIntoTheNextPartition,
    ::testing::Values(
        Reach{"Metadata", Testing::smallMetadata(), 2, "which reaches into the next partition"},
        Reach{"Set",
              join({Testing::smallMetadata(),
                    farther(Testing::structuralKey(Testing::identificationSet))}),
              2, "KLV of 250 bytes reaches into the next partition"},
        Reach{"DarkSet", join({Testing::smallMetadata(), farther(Testing::uuid(9))}), 2,
              "KLV of 250 bytes reaches into the next partition"},
        Reach{"Fill", join({Testing::smallMetadata(), farther(fillKey())}), 2,
              "which reaches into the next partition"},
        Reach{"Primer", farther(Testing::primerKey()), 0, "header metadata has no Preface"}),
    Testing::nameOfCase<Reach>);

TEST(HeaderMetadata, isNotBehindAFillThatReachesIntoTheNextPartition) {
    PartitionSpec spec = Testing::headerPartition();
    spec.behindPack = farther(fillKey());
    ReadBack back(MxfBuilder().add(spec).add(Testing::footerPartition(Testing::smallMetadata())));
    ASSERT_EQ(back.file.partitions().size(), 2U);
    EXPECT_EQ(Testing::messageOf([&] { back.metadata(PartitionChoice::numbered(0)); }),
              "no header metadata in partition 0 (header, closed and complete)");
}

TEST(HeaderMetadata, isKeptUpToALengthThatCannotBe) {
    for (const int first : {0x80, 0x89, 0xFF}) {
        const Bytes lie = join({Testing::structuralKey(Testing::identificationSet),
                                Testing::number(static_cast<unsigned>(first), 1), Bytes(20)});
        ReadBack back(MxfBuilder().add(header(join({Testing::smallMetadata(), lie}))));
        EXPECT_EQ(back.metadata().size(), 2U);
        EXPECT_FALSE(back.read.isWhole);
        EXPECT_TRUE(back.warnings.tell("BER length")) << back.warnings.lines();
    }
}

} // namespace
} // namespace Corvid::mxf
