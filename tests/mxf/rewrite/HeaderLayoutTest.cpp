#include "host/mxf/rewrite/HeaderLayout.h"

#include "tests/mxf/rewrite/LayoutOf.h"
#include "tests/support/FailingSource.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <iterator>

namespace Corvid::mxf {
namespace {

using Kind = LayoutItem::Kind;
using Testing::copyOf;
using Testing::fill;
using Testing::headerPartition;
using Testing::join;
using Testing::klv;
using Testing::LayoutOf;
using Testing::MxfBuilder;
using Testing::property;
using Testing::smallMetadata;
using Testing::structuralKey;

const Testing::Bytes essence = klv(Testing::essenceKey(), Testing::repeat(0xEE, 5000));
const Testing::Bytes darkKlv = klv(Testing::uuid(7), {1, 2, 3}, 9);

std::vector<Kind> kindsIn(const HeaderLayout& layout) {
    std::vector<Kind> kinds;
    for (const LayoutItem& item : layout.items()) {
        kinds.push_back(item.kind);
    }
    return kinds;
}

/// Every byte of the metadata is one item's, and the layout has the bytes of the file.
void expectWhole(const LayoutOf& of) {
    std::uint64_t next = of.layout.begin();
    for (const LayoutItem& item : of.layout.items()) {
        EXPECT_EQ(item.offset(), next);
        next = item.end();
        const auto size = item.kind == Kind::fill ? item.triplet.headSize() : item.size();
        const auto front = of.bytes.begin() + static_cast<std::ptrdiff_t>(item.offset());
        EXPECT_EQ(copyOf(of.layout.bytes(item)),
                  Testing::Bytes(front, front + static_cast<std::ptrdiff_t>(size)));
    }
    EXPECT_EQ(of.layout.end(), next);
}

TEST(HeaderLayout, listsEveryKlvFromThePrimerPackToTheLastFill) {
    const Testing::Bytes metadata =
        join({Testing::standardPrimer(), fill(3), Testing::smallSets(), darkKlv, fill(700)});
    Testing::PartitionSpec header = headerPartition(metadata);
    header.behindPack = fill(100);
    header.behindMetadata = join({fill(10), essence});
    const MxfBuilder builder = MxfBuilder().add(header).runIn(Testing::repeat(1, 60));
    const LayoutOf of(builder);
    EXPECT_EQ(kindsIn(of.layout), (std::vector<Kind>{Kind::primer, Kind::fill, Kind::set, Kind::set,
                                                     Kind::dark, Kind::fill}));
    expectWhole(of);
    EXPECT_EQ(of.layout.begin(), 60U + 20 + 88 + 120);
    EXPECT_EQ(of.layout.size(), metadata.size());
    EXPECT_TRUE(of.layout.hasTrueByteCount());
    EXPECT_EQ(of.layout.items()[4].triplet.length.octets, 9);
}

TEST(HeaderLayout, findsSetsAndPropertiesByTheirIdentifiers) {
    const LayoutOf of(MxfBuilder().add(headerPartition()));
    const HeaderLayout& layout = of.layout;
    const LayoutItem& preface = layout.items()[of.set(1)];
    EXPECT_EQ(preface.triplet.key, KLV::Key(structuralKey(Testing::prefaceSet).data()));
    EXPECT_EQ(layout.instanceUID(preface), Types::UUID({Testing::uuid(1).data(), 16}));
    LocalSet properties = layout.properties(preface);
    std::vector<unsigned> tags;
    while (const auto each = properties.next()) {
        tags.push_back(each->tag);
    }
    EXPECT_EQ(tags, (std::vector<unsigned>{0x3C0A, 0x3B02, 0x3B05, 0x3B03}));
    EXPECT_EQ(layout.tag(Testing::labelOf(Testing::instanceUIDLabel())), 0x3C0A);
    Testing::Bytes otherVersion = Testing::instanceUIDLabel();
    otherVersion[7] = 13;
    EXPECT_EQ(layout.tag(Testing::labelOf(otherVersion)), 0x3C0A);
    EXPECT_EQ(*layout.label(0x3C0A), Testing::labelOf(Testing::instanceUIDLabel()));
    EXPECT_EQ(layout.label(0x8001), nullptr);
    EXPECT_TRUE(layout.isTagInUse(0x4801));
    EXPECT_FALSE(layout.isTagInUse(0x8001));
    EXPECT_FALSE(layout.find(Types::UUID({Testing::uuid(9).data(), 16})));
}

TEST(HeaderLayout, takesTheFirstOfTwoEntriesWithOneTagAndOfTwoSetsWithOneInstanceUID) {
    auto entries = Testing::standardLabels();
    const Testing::Bytes other = Testing::uuid(99);
    entries.emplace_back(0x3C0A, other);
    const LayoutOf of(MxfBuilder().add(headerPartition(
        join({Testing::primer(entries), Testing::smallSets(), Testing::smallSets()}))));
    EXPECT_EQ(*of.layout.label(0x3C0A), Testing::labelOf(Testing::instanceUIDLabel()));
    EXPECT_FALSE(of.layout.tag(Testing::labelOf(other)));
    EXPECT_EQ(of.set(1), 1U);
}

TEST(HeaderLayout, countsATagAsInUseWhichOnlyASetHas) {
    const LayoutOf of(MxfBuilder().add(headerPartition(
        join({Testing::standardPrimer(),
              Testing::set(structuralKey(Testing::prefaceSet), 1, {property(0xFFFF, {1})})}))));
    EXPECT_TRUE(of.layout.isTagInUse(0xFFFF));
    EXPECT_EQ(of.layout.label(0xFFFF), nullptr);
}

TEST(HeaderLayout, keepsASetThatCannotBeTakenApartAsDark) {
    const LayoutOf of(MxfBuilder().add(headerPartition(
        join({smallMetadata(), klv(structuralKey(0x2E), property(0x3C0A, {1, 2}, 16))}))));
    EXPECT_EQ(of.layout.items().back().kind, Kind::dark);
}

TEST(HeaderLayout, readsPropertiesWithBerLengths) {
    const LayoutOf of(MxfBuilder().add(headerPartition(
        join({Testing::standardPrimer(), Testing::withBerLengths(Testing::smallSets())}))));
    EXPECT_EQ(of.set(1), 1U);
    EXPECT_EQ(of.set(2), 2U);
}

struct PrimerCase {
    const char* name;
    Testing::Bytes primer;
    bool isSound;
};
void PrintTo(const PrimerCase& c, std::ostream* out) { *out << c.name; }

class PrimerSoundness : public ::testing::TestWithParam<PrimerCase> {};

TEST_P(PrimerSoundness, isKnown) {
    const LayoutOf of(
        MxfBuilder().add(headerPartition(join({GetParam().primer, Testing::smallSets()}))));
    EXPECT_EQ(of.layout.hasSoundPrimer(), GetParam().isSound);
    EXPECT_EQ(of.layout.items().size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(
    , PrimerSoundness,
    ::testing::Values(
        PrimerCase{"Sound", Testing::standardPrimer(), true},
        PrimerCase{"Empty", Testing::primer({}), true},
        PrimerCase{"EmptyWithoutItemSize", Testing::primer({}, 0, 0), true},
        PrimerCase{"CountTooHigh", Testing::primer(Testing::standardLabels(), 10), false},
        PrimerCase{"ItemSize", Testing::primer(Testing::standardLabels(), {}, 17), false},
        PrimerCase{"Length", klv(Testing::primerKey(), Testing::Bytes(9)), false},
        PrimerCase{"NoBytes", klv(Testing::primerKey(), {}), false}),
    Testing::nameOfCase<PrimerCase>);

struct CountCase {
    const char* name;
    std::uint64_t count;
};
void PrintTo(const CountCase& c, std::ostream* out) { *out << c.name; }

class UntrueByteCount : public ::testing::TestWithParam<CountCase> {};

TEST_P(UntrueByteCount, letsTheMetadataEndAtTheFirstKeyThatIsNone) {
    Testing::PartitionSpec header = headerPartition(join({smallMetadata(), fill(30)}));
    header.headerByteCount = GetParam().count;
    header.behindMetadata = essence;
    const LayoutOf of(MxfBuilder().add(header));
    EXPECT_FALSE(of.layout.hasTrueByteCount());
    EXPECT_EQ(of.layout.size(), smallMetadata().size() + 50);
    expectWhole(of);
}

INSTANTIATE_TEST_SUITE_P(, UntrueByteCount,
                         ::testing::Values(CountCase{"Zero", 0}, CountCase{"InsideAKlv", 70},
                                           CountCase{"BeforeASet", 190},
                                           CountCase{"PastTheFile", 1 << 30},
                                           CountCase{"Greatest", ~std::uint64_t{0}}),
                         Testing::nameOfCase<CountCase>);

struct Refused {
    const char* name;
    Testing::Bytes metadata;
    const char* message;
};
void PrintTo(const Refused& c, std::ostream* out) { *out << c.name; }

class RefusesLayout : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusesLayout, withAMessage) {
    const std::string message = Testing::messageOf(
        [] { LayoutOf(MxfBuilder().add(headerPartition(GetParam().metadata))); });
    EXPECT_EQ(message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    , RefusesLayout,
    ::testing::Values(
        Refused{"NoMetadata",
                {},
                "byte 0: the partition has no header metadata, so the header "
                "metadata can't be changed"},
        Refused{"CutOff", join({smallMetadata(), klv(structuralKey(0x2E), {1}, 4, 2)}),
                "byte 416: a KLV of 2 bytes reaches past the end of the file, so the header "
                "metadata can't be changed"},
        Refused{"CutInALength", join({smallMetadata(), structuralKey(0x2E), {0x83, 0}}),
                "byte 416: the KLV at byte 416 ends after 18 bytes, inside its key or length, so "
                "the header metadata can't be changed"},
        Refused{"Zeros", join({smallMetadata(), Testing::Bytes(40)}),
                "byte 416: there are zeros instead of a key, so the header metadata can't be "
                "changed"}),
    Testing::nameOfCase<Refused>);

TEST(HeaderLayout, refusesAKlvThatReachesIntoTheNextPartition) {
    const Testing::Bytes metadata = join({smallMetadata(), klv(structuralKey(0x2E), {1}, 4, 50)});
    EXPECT_EQ(Testing::messageOf([&] {
                  LayoutOf(MxfBuilder()
                               .add(headerPartition(metadata))
                               .add(Testing::footerPartition())
                               .withRandomIndexPack());
              }),
              "byte 416: a KLV of 50 bytes reaches past the end of the partition, so the header "
              "metadata can't be changed");
}

/// Counts the bytes that are read.
class CountingSource : public DataIO::MemorySource {
public:
    using MemorySource::MemorySource;
    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        const std::size_t got = MemorySource::readAt(offset, to, count);
        bytes += got;
        return got;
    }
    std::size_t bytes = 0;
};

TEST(HeaderLayout, doesNotReadFillOrEssence) {
    constexpr std::size_t long_ = 4 * 1024 * 1024;
    Testing::PartitionSpec header = headerPartition(
        join({Testing::standardPrimer(), fill(long_), Testing::smallSets(), fill(long_)}));
    header.behindPack = fill(long_);
    header.behindMetadata = klv(Testing::essenceKey(), Testing::Bytes(long_));
    const Testing::Bytes bytes = MxfBuilder().add(header).build();
    CountingSource source(bytes.data(), bytes.size());
    DataIO::ReadWindow window(source);
    NoWarnings nobody;
    const Partition partition = findHeaderPartition(window, nobody);
    const HeaderLayout layout(window, partition);
    EXPECT_EQ(layout.items().size(), 5U);
    EXPECT_LT(source.bytes, 3U * 65536);
}

TEST(HeaderLayout, passesOnTheErrorOfEveryRead) {
    const Testing::Bytes bytes =
        MxfBuilder()
            .add(headerPartition(join({smallMetadata(), fill(100000), Testing::smallSets(),
                                       klv(Testing::uuid(9), Testing::Bytes(200000))})))
            .build();
    const unsigned failures = Testing::countFailingReads(bytes, [](auto source) {
        DataIO::ReadWindow window(*source);
        NoWarnings nobody;
        const HeaderLayout layout(window, findHeaderPartition(window, nobody));
    });
    EXPECT_GT(failures, 2U);
    EXPECT_LT(failures, 1000U);
}

TEST(HeaderLayout, holdsEveryCopyOfEverySample) {
    const auto folder = Testing::samplesDir();
    if (folder.empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    std::size_t copies = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        Testing::ReadBack back(Testing::Bytes(std::istreambuf_iterator<char>(stream), {}));
        const HeaderMetadata read = back.file.readMetadata(PartitionChoice::header());
        const LayoutOf of(back.bytes);
        expectWhole(of);
        EXPECT_EQ(of.layout.begin(), read.begin);
        EXPECT_EQ(of.layout.end(), read.end);
        const auto kinds = kindsIn(of.layout);
        const auto sets = std::count(kinds.begin(), kinds.end(), Kind::set) +
                          std::count(kinds.begin(), kinds.end(), Kind::dark);
        EXPECT_EQ(static_cast<std::size_t>(sets),
                  read.metadata->size() +
                      static_cast<std::size_t>(
                          std::distance(read.metadata->darkBegin(), read.metadata->darkEnd())));
        ++copies;
    }
    EXPECT_GT(copies, 20U);
}

} // namespace
} // namespace Corvid::mxf
