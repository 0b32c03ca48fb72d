#include "host/mxf/rewrite/RewritableFile.h"

#include "host/mxf/rewrite/FileHashes.h"
#include "tests/mxf/rewrite/CarryOut.h"

#include <gmock/gmock.h>

namespace Corvid::mxf {
namespace {

using Testing::fill;
using Testing::footerPartition;
using Testing::headerPartition;
using Testing::join;
using Testing::klv;
using Testing::longProperty;
using Testing::messageOf;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::Rewritable;
using TestBytes = Testing::Bytes;

const TestBytes metadata = join({Testing::smallMetadata(), fill(40)});
const TestBytes essence = klv(Testing::essenceKey(), Testing::repeat(0xEE, 5000));
const TestBytes index = klv(Testing::indexSegmentKey(), Testing::repeat(0xCC, 300));

PartitionSpec with(PartitionSpec spec, const TestBytes& behind, std::uint32_t kagSize = 1) {
    spec.behindMetadata = behind;
    spec.kagSize = kagSize;
    return spec;
}

/// Header, two bodies, a footer with metadata and an index table, and a random index pack.
MxfBuilder whole() {
    return MxfBuilder()
        .add(with(headerPartition(metadata), essence))
        .add(with(Testing::bodyPartition(), essence))
        .add(with(Testing::bodyPartition(metadata), essence))
        .add(with(footerPartition(metadata), index))
        .withRandomIndexPack();
}

/// Every KLV of a file but fill, packs and metadata: what may move, but must not change.
std::vector<TestBytes> others(const TestBytes& bytes) {
    std::vector<TestBytes> found;
    for (std::size_t at = 0; at + 16 <= bytes.size(); ++at) {
        for (const TestBytes& klv : {essence, index}) {
            if (bytes.size() - at >= klv.size() &&
                std::equal(klv.begin(), klv.end(),
                           bytes.begin() + static_cast<std::ptrdiff_t>(at))) {
                found.push_back(klv);
            }
        }
    }
    return found;
}

/// A file whose header metadata has grown can be trusted as much as before.
void expectSound(const TestBytes& before, const TestBytes& after) {
    EXPECT_EQ(others(after), others(before));
    Rewritable was(before);
    Rewritable is(after);
    ASSERT_EQ(is.file.partitions().size(), was.file.partitions().size());
    EXPECT_EQ(hashOf(is.source, essenceOf(is.file)), hashOf(was.source, essenceOf(was.file)));
    for (std::size_t i = 0; i != is.file.partitions().size(); ++i) {
        const PartitionPack& old = was.file.partitions()[i].pack;
        const PartitionPack& pack = is.file.partitions()[i].pack;
        EXPECT_EQ(pack.footerPartition == 0, old.footerPartition == 0);
        EXPECT_EQ(pack.kagSize, old.kagSize);
        EXPECT_EQ(pack.bodyOffset, old.bodyOffset);
        EXPECT_EQ(pack.indexByteCount, old.indexByteCount);
        if (is.file.hasMetadata(i)) {
            EXPECT_TRUE(is.file.layout(i).hasTrueByteCount());
        }
    }
    Rewritable again(after);
    FileEdit edit;
    edit.copies.push_back(longProperty(again.file, 0, 2, 60000));
    EXPECT_EQ(messageOf([&] { again.planned(edit); }), "");
}

TEST(RewritableFile, knowsWhatNoEditChanges) {
    PartitionSpec header = with(headerPartition(metadata), join({index, essence}));
    header.behindPack = fill(100);
    PartitionSpec body = with(Testing::bodyPartition(), essence);
    body.behindPack = fill(70);
    Rewritable of(MxfBuilder()
                      .runIn(Testing::repeat(0x42, 1000))
                      .add(header)
                      .add(body)
                      .add(with(footerPartition(metadata), index))
                      .withRandomIndexPack());
    TestBytes found;
    for (const FileRange& range : essenceOf(of.file)) {
        found.insert(found.end(), of.bytes.begin() + static_cast<std::ptrdiff_t>(range.begin),
                     of.bytes.begin() + static_cast<std::ptrdiff_t>(range.end));
    }
    EXPECT_EQ(found, join({index, essence, essence, index}));
}

TEST(RewritableFile, changesNothingWhereNothingIsToChange) {
    Rewritable of(whole());
    FileEdit edit;
    edit.copies.push_back({0, {}});
    edit.copies.push_back({3, {}});
    const Rewrite rewrite = of.file.plan(edit);
    EXPECT_TRUE(rewrite.isEmpty());
    EXPECT_EQ(rewrite.newSize(), of.bytes.size());
}

TEST(RewritableFile, changesEveryCopyInItsPlaceWhereThereIsRoom) {
    Rewritable of(whole());
    FileEdit edit;
    for (const std::size_t copy : {0U, 2U, 3U}) {
        edit.copies.push_back(longProperty(of.file, copy, 1, 3));
    }
    const Rewrite rewrite = of.file.plan(edit);
    EXPECT_TRUE(rewrite.insertions.empty());
    const TestBytes after = Testing::carryOut(of.bytes, rewrite);
    EXPECT_EQ(after.size(), of.bytes.size());
    expectSound(of.bytes, after);
    for (const std::size_t copy : {0U, 2U, 3U}) {
        const Testing::LayoutOf layout(after, copy);
        EXPECT_EQ(layout.layout.tag(Testing::labelOf(
                      Testing::hex("06.0e.2b.34.01.01.01.01.0e.7f.00.00.00.00.00.01"))),
                  0xFFFF);
    }
}

struct Case {
    const char* name;
    MxfBuilder (*file)();
    std::vector<std::size_t> copies;
    Growth growth;
    std::vector<std::uint64_t> inserted;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Grows : public ::testing::TestWithParam<Case> {};

TEST_P(Grows, andEverythingThatCountsBytesFollows) {
    const auto& c = GetParam();
    Rewritable of(c.file());
    FileEdit edit;
    for (const std::size_t copy : c.copies) {
        edit.copies.push_back(longProperty(of.file, copy, 1, 1000));
    }
    const Rewrite rewrite = of.file.plan(edit, c.growth);
    ASSERT_EQ(rewrite.insertions.size(), c.inserted.size());
    for (std::size_t i = 0; i != c.inserted.size(); ++i) {
        EXPECT_EQ(rewrite.insertions[i].size, c.inserted[i]);
    }
    const TestBytes after = Testing::carryOut(of.bytes, rewrite);
    expectSound(of.bytes, after);
    Rewritable is(after);
    for (const std::size_t copy : c.copies) {
        const HeaderLayout& layout = is.file.layout(copy);
        const auto& preface =
            layout.items()[layout.find(Types::UUID({Testing::uuid(1).data(), 16})).value()];
        EXPECT_GT(preface.size(), 1000U);
    }
}

// The property has 4 bytes of head, its primer entry 18, and the fill 60: 962 are missing.
INSTANTIATE_TEST_SUITE_P(
    , Grows,
    ::testing::Values(Case{"ByWhatIsMissing", whole, {0}, {0, 1}, {962}},
                      Case{"ByTheReserveToo", whole, {0}, {8192, 1}, {962 + 8192}},
                      Case{"ByBlocks", whole, {0}, {8192, 4096}, {3 * 4096}},
                      Case{"InAllCopies", whole, {0, 2, 3}, {100, 1}, {1062, 1062, 1062}},
                      Case{"InTheFooter", whole, {3}, {0, 1}, {962}},
                      Case{"BehindARunIn",
                           [] { return whole().runIn(Testing::repeat(0x42, 1000)); },
                           {0, 3},
                           {0, 1},
                           {962, 962}},
                      Case{"InStepsOfAllKagSizes",
                           [] {
                               return MxfBuilder()
                                   .add(with(headerPartition(metadata), essence, 512))
                                   .add(with(Testing::bodyPartition(), essence, 0))
                                   .add(with(Testing::bodyPartition(), essence, 384))
                                   .add(with(footerPartition(), index, 1))
                                   .withRandomIndexPack();
                           },
                           {0},
                           {0, 1},
                           {1536}},
                      Case{"WithoutARandomIndexPack",
                           [] {
                               return MxfBuilder()
                                   .add(with(headerPartition(metadata), essence))
                                   .add(with(Testing::bodyPartition(), essence))
                                   .add(with(footerPartition(), index));
                           },
                           {0},
                           {0, 1},
                           {962}},
                      Case{"WithoutAFooter",
                           [] {
                               return MxfBuilder()
                                   .add(with(headerPartition(metadata), essence))
                                   .add(with(Testing::bodyPartition(), essence))
                                   .withRandomIndexPack();
                           },
                           {0},
                           {0, 1},
                           {962}},
                      Case{"WhereFooterPartitionIsNotSaid",
                           [] {
                               PartitionSpec header = with(headerPartition(metadata), essence);
                               header.footerPartition = 0;
                               return MxfBuilder()
                                   .add(header)
                                   .add(with(footerPartition(), index))
                                   .withRandomIndexPack();
                           },
                           {0},
                           {0, 1},
                           {962}},
                      Case{"InAGenericStreamFile",
                           [] {
                               PartitionSpec stream = with(Testing::bodyPartition(), essence);
                               stream.status = 0x11;
                               return MxfBuilder()
                                   .add(with(headerPartition(metadata), join({index, essence})))
                                   .add(stream)
                                   .add(footerPartition())
                                   .withRandomIndexPack();
                           },
                           {0},
                           {0, 1},
                           {962}},
                      Case{"WhereTheMetadataIsAllThatThereIsAfterFill",
                           [] {
                               PartitionSpec header = headerPartition(metadata);
                               header.behindPack = fill(200);
                               return MxfBuilder().add(header);
                           },
                           {0},
                           {0, 1},
                           {962}},
                      Case{"WhereTheMetadataIsAllThatThereIs",
                           [] { return MxfBuilder().add(headerPartition(metadata)); },
                           {0},
                           {0, 1},
                           {962}}),
    Testing::nameOfCase<Case>);

TEST(RewritableFile, leavesNoGapThatNoFillCanFill) {
    for (std::size_t size = 0; size != 120; ++size) {
        Rewritable of(whole());
        FileEdit edit;
        edit.copies.push_back(longProperty(of.file, 0, 1, size));
        const TestBytes after = of.planned(edit, {0, 1});
        Rewritable is(after);
        EXPECT_TRUE(is.file.layout(0).hasTrueByteCount()) << size;
    }
}

struct Refused {
    const char* name;
    MxfBuilder (*file)();
    const char* message;
};
void PrintTo(const Refused& c, std::ostream* out) { *out << c.name; }

class RefusesGrowth : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusesGrowth, butNotAnEditInPlace) {
    Rewritable of(GetParam().file());
    FileEdit small;
    small.copies.push_back(longProperty(of.file, 0, 1, 3));
    EXPECT_EQ(messageOf([&] { of.planned(small); }), "");
    FileEdit large;
    large.copies.push_back(longProperty(of.file, 0, 1, 1000));
    EXPECT_EQ(messageOf([&] { of.planned(large); }), GetParam().message);
}

template <class Change> MxfBuilder changedFile(Change change, bool withIndex = true) {
    PartitionSpec header = with(headerPartition(metadata), essence);
    PartitionSpec footer = with(footerPartition(), index);
    change(header, footer);
    MxfBuilder builder;
    builder.add(header).add(footer);
    return withIndex ? builder.withRandomIndexPack() : builder;
}

#define CORVID_UNCERTAIN                                                                           \
    "the header metadata can't grow, because not all offsets in the file are certain: "

INSTANTIATE_TEST_SUITE_P(
    , RefusesGrowth,
    ::testing::Values(
        Refused{"ThisPartition",
                [] {
                    return changedFile(
                        [](PartitionSpec&, PartitionSpec& footer) { footer.thisPartition = 7; });
                },
                CORVID_UNCERTAIN "byte 5496: ThisPartition is 7, expected 5496 [this-partition]"},
        Refused{"PreviousPartition",
                [] {
                    return changedFile([](PartitionSpec&, PartitionSpec& footer) {
                        footer.previousPartition = 7;
                    });
                },
                CORVID_UNCERTAIN "byte 5496: PreviousPartition is 7, expected 0"},
        Refused{"FooterPartition",
                [] {
                    return changedFile(
                        [](PartitionSpec&, PartitionSpec& footer) { footer.footerPartition = 7; });
                },
                CORVID_UNCERTAIN "byte 5496: FooterPartition is 7, expected 0 or the offset of "
                                 "the last partition, a footer partition"},
        Refused{"AnIndexThatLacksAPartition",
                [] {
                    return changedFile([](PartitionSpec&, PartitionSpec&) {}, false)
                        .withRandomIndexPack(std::vector<std::uint64_t>{0});
                },
                CORVID_UNCERTAIN "byte 5924: the random index pack does not list the partitions "
                                 "of the file in their order"},
        Refused{"AnIndexOfAnotherOrder",
                [] {
                    return changedFile([](PartitionSpec&, PartitionSpec&) {}, false)
                        .withRandomIndexPack(std::vector<std::uint64_t>{5496, 0});
                },
                CORVID_UNCERTAIN "byte 5924: the random index pack does not list the partitions "
                                 "of the file in their order"},
        Refused{"NothingThatSaysWhere",
                [] {
                    return changedFile(
                        [](PartitionSpec& header, PartitionSpec& footer) {
                            header.footerPartition = footer.footerPartition = 0;
                            header.status = 1;
                        },
                        false);
                },
                CORVID_UNCERTAIN "byte 0: nothing in the file says where its partitions are; 1 "
                                 "found after the header partition by going from KLV to KLV "
                                 "[partitions-searched]"},
        Refused{"EssenceBehindTheOnlyPartition",
                [] { return MxfBuilder().add(with(headerPartition(metadata), essence)); },
                CORVID_UNCERTAIN "neither a random index pack nor FooterPartition says where the "
                                 "partitions of the file are"},
        Refused{"HeaderByteCount",
                [] {
                    return changedFile(
                        [](PartitionSpec& header, PartitionSpec&) { header.headerByteCount = 0; });
                },
                "byte 0: HeaderByteCount is 0, expected 368, so the header metadata can't grow"},
        Refused{"KagSizesWithoutASmallMultiple",
                [] {
                    return changedFile([](PartitionSpec& header, PartitionSpec& footer) {
                        header.kagSize = 1000003;
                        footer.kagSize = 512;
                    });
                },
                "byte 5496: the KAG size 512 lets header metadata grow only in steps of 512001536 "
                "bytes, expected at most 67108864"}),
    Testing::nameOfCase<Refused>);

TEST(RewritableFile, changesPacksWithoutWritingThemAnew) {
    const TestBytes label = Testing::hex("06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.01.00");
    MxfBuilder builder;
    for (PartitionSpec spec : {headerPartition(metadata), footerPartition(metadata)}) {
        spec.essenceContainers = {label, label};
        builder.add(with(spec, {}));
    }
    Rewritable of(builder.withRandomIndexPack());
    FileEdit edit;
    PackEdit pack;
    pack.partition = 1;
    pack.status = PartitionStatus::closedIncomplete;
    TestBytes other = label;
    other[13] = 0x33;
    pack.operationalPattern = Testing::labelOf(other);
    pack.essenceContainers = {Testing::labelOf(label), Testing::labelOf(other)};
    edit.packs.push_back(pack);
    const Rewrite inPlace = of.file.plan(edit);
    EXPECT_EQ(inPlace.writes.size(), 3U);
    edit.copies.push_back(longProperty(of.file, 0, 1, 1000)); // and while it moves
    for (const Rewrite& rewrite : {inPlace, of.file.plan(edit)}) {
        Rewritable is(Testing::carryOut(of.bytes, rewrite));
        const PartitionPack& was = of.file.partitions()[1].pack;
        const PartitionPack& now = is.file.partitions()[1].pack;
        EXPECT_EQ(now.status, PartitionStatus::closedIncomplete);
        EXPECT_EQ(now.kind, PartitionKind::footer);
        EXPECT_EQ(now.operationalPattern, Testing::labelOf(other));
        EXPECT_EQ(now.essenceContainers[0], was.essenceContainers[0]);
        EXPECT_EQ(now.essenceContainers[1], Testing::labelOf(other));
        EXPECT_EQ(is.file.partitions()[0].pack.operationalPattern, was.operationalPattern);
    }
    edit.packs[0].essenceContainers->pop_back();
    EXPECT_EQ(messageOf([&] { of.file.plan(edit); }),
              "byte 508: the partition pack has 2 essence containers and can't have 1: no fill "
              "follows it that could make up for the difference");
}

/// A pack with two essence containers and fill after it gets another number.
struct OtherNumber {
    const char* name;
    std::size_t fillSize;
    std::size_t number;
    bool isPossible;
};
void PrintTo(const OtherNumber& c, std::ostream* out) { *out << c.name; }

class ChangesTheNumberOfEssenceContainers : public ::testing::TestWithParam<OtherNumber> {};

TEST_P(ChangesTheNumberOfEssenceContainers, whereFillFollows) {
    const TestBytes label = Testing::hex("06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.01.00");
    PartitionSpec body = with(Testing::bodyPartition(), essence);
    body.essenceContainers = {label, label};
    if (GetParam().fillSize != 0) {
        body.behindPack = fill(GetParam().fillSize - 20);
        ASSERT_EQ(body.behindPack.size(), GetParam().fillSize);
    }
    Rewritable of(MxfBuilder()
                      .add(with(headerPartition(metadata), essence))
                      .add(body)
                      .add(footerPartition(metadata))
                      .withRandomIndexPack());
    FileEdit edit;
    PackEdit pack;
    pack.partition = 1;
    pack.essenceContainers.emplace();
    for (std::size_t i = 0; i != GetParam().number; ++i) {
        TestBytes each = label;
        each[13] = static_cast<unsigned char>(i + 1);
        pack.essenceContainers->push_back(Testing::labelOf(each));
    }
    edit.packs.push_back(pack);
    if (!GetParam().isPossible) {
        EXPECT_THAT(messageOf([&] { of.file.plan(edit); }), ::testing::HasSubstr("no fill"));
        return;
    }
    const Rewrite inPlace = of.file.plan(edit);
    edit.copies.push_back(longProperty(of.file, 0, 1, 1000)); // and while it moves
    for (const Rewrite& rewrite : {inPlace, of.file.plan(edit)}) {
        const TestBytes after = Testing::carryOut(of.bytes, rewrite);
        expectSound(of.bytes, after);
        Rewritable is(after);
        const Partition& now = is.file.partitions()[1];
        EXPECT_EQ(now.pack.essenceContainers, *pack.essenceContainers);
        EXPECT_EQ(now.triplet.length.value, 88 + 16 * GetParam().number);
    }
}

INSTANTIATE_TEST_SUITE_P(, ChangesTheNumberOfEssenceContainers,
                         ::testing::Values(OtherNumber{"More", 200, 5, true},
                                           OtherNumber{"MoreThanHaveRoom", 200, 20, false},
                                           OtherNumber{"UpToTheLeastFill", 33, 3, true},
                                           OtherNumber{"InThePlaceOfAllFill", 32, 4, true},
                                           OtherNumber{"WithAGapLeft", 36, 4, false},
                                           OtherNumber{"WithoutFill", 0, 3, false},
                                           OtherNumber{"Fewer", 40, 1, true},
                                           OtherNumber{"NoneAndNoFill", 0, 0, true},
                                           OtherNumber{"OneLessAndNoFill", 0, 1, false}),
                         Testing::nameOfCase<OtherNumber>);

TEST(RewritableFile, refusesPartitionsThatAreNotThere) {
    Rewritable of(whole());
    FileEdit edit;
    edit.copies.push_back({4, {}});
    EXPECT_EQ(messageOf([&] { of.file.plan(edit); }), "the edit names partition 4, the last is 3");
    edit.copies = {{0, {}}, {0, {}}};
    EXPECT_EQ(messageOf([&] { of.file.plan(edit); }),
              "the edit names the header metadata of partition 0 twice");
}

} // namespace
} // namespace Corvid::mxf
