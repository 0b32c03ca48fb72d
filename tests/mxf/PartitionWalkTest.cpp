#include "host/mxf/PartitionWalk.h"

#include "host/dataio/FileDescriptor.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/FailingSource.h"
#include "tests/support/Paths.h"

#include <fcntl.h>
#include <unistd.h>

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using Testing::join;
using Testing::klv;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::ReadBack;

const Bytes essence = klv(Testing::essenceKey(), Testing::repeat(0xEE, 5000));

/// A partition as a recorder writes it that does not yet know where the footer will be.
PartitionSpec open(PartitionSpec spec, const Bytes& behind = essence) {
    spec.status = spec.kind == 4 ? 4 : 1;
    spec.footerPartition = 0;
    spec.behindMetadata = behind;
    return spec;
}

/// Header, body and footer; nothing but the bytes in between leads from one to the next.
MxfBuilder unfinished() {
    return MxfBuilder()
        .add(open(Testing::headerPartition()))
        .add(open(Testing::bodyPartition(), join({essence, essence})))
        .add(open(Testing::footerPartition(Testing::smallMetadata()), {}));
}

std::vector<std::uint64_t> offsetsIn(File& file) {
    std::vector<std::uint64_t> offsets;
    for (const Partition& partition : file.partitions()) {
        offsets.push_back(partition.offset());
    }
    return offsets;
}

TEST(PartitionWalk, findsTheFooterOfAFileThatWasNotEnded) {
    const MxfBuilder builder = unfinished();
    ReadBack back(builder);
    EXPECT_EQ(offsetsIn(back.file),
              (std::vector<std::uint64_t>{0, builder.offsetOf(1), builder.offsetOf(2)}));
    EXPECT_EQ(back.file.partitions()[1].end, builder.offsetOf(2));
    back.metadata();
    EXPECT_EQ(back.read.partition, 2U);
    EXPECT_EQ(back.warnings.lines(),
              "byte 0: nothing in the file says where its partitions are; 2 found after the header "
              "partition by going from KLV to KLV [partitions-searched]\n");
}

TEST(PartitionWalk, countsFromTheHeaderPartition) {
    const MxfBuilder builder = unfinished().runIn(Testing::repeat(0x06, 100));
    ReadBack back(builder);
    EXPECT_EQ(offsetsIn(back.file), (std::vector<std::uint64_t>{100, builder.offsetOf(1) + 100,
                                                                builder.offsetOf(2) + 100}));
}

TEST(PartitionWalk, isNotNeededWhereTheFileSaysWhereItsPartitionsAre) {
    PartitionSpec stray = Testing::bodyPartition();
    MxfBuilder builder;
    builder.add(open(Testing::headerPartition(), Bytes{1, 2, 3})).add(stray);
    builder.withRandomIndexPack();
    ReadBack back(builder);
    EXPECT_EQ(offsetsIn(back.file).size(), 2U);
    EXPECT_EQ(back.warnings.lines(), "");
}

TEST(PartitionWalk, saysNothingOfAFileWithOnePartition) {
    for (const Bytes& behind : {Bytes{}, essence, Testing::fill(700)}) {
        ReadBack back(MxfBuilder().add(open(Testing::headerPartition(), behind)));
        EXPECT_EQ(offsetsIn(back.file), std::vector<std::uint64_t>{0});
        EXPECT_EQ(back.warnings.lines(), "");
    }
}

TEST(PartitionWalk, passesHeaderMetadataOfPrivateKeys) {
    const Bytes metadata =
        join({Testing::smallMetadata(), klv(Testing::uuid(99), Testing::repeat(1, 40))});
    MxfBuilder builder;
    builder.add(open(Testing::headerPartition(metadata)))
        .add(open(Testing::bodyPartition(metadata)))
        .add(open(Testing::footerPartition(), {}));
    ReadBack back(builder);
    EXPECT_EQ(offsetsIn(back.file).size(), 3U);
}

TEST(PartitionWalk, saysNothingOfPrivateKeysInMetadataThatEndsWithTheFile) {
    const Bytes metadata =
        join({Testing::smallMetadata(), klv(Testing::uuid(99), Testing::repeat(1, 40))});
    ReadBack back(MxfBuilder().add(open(Testing::headerPartition(metadata), {})));
    EXPECT_EQ(offsetsIn(back.file), std::vector<std::uint64_t>{0});
    EXPECT_EQ(back.warnings.lines(), "");
}

TEST(PartitionWalk, namesTheKindOfThePartitionWhereItBegins) {
    PartitionSpec body = open(Testing::bodyPartition(Testing::smallMetadata()));
    body.thisPartition = 0;
    body.previousPartition = 0;
    ReadBack back(MxfBuilder().add(body).add(open(Testing::footerPartition(), {})));
    back.file.partitions();
    EXPECT_TRUE(back.warnings.tell("1 found after the body partition by going"))
        << back.warnings.lines();
}

TEST(PartitionWalk, doesNotDenyThatTheFileNamesAFooter) {
    PartitionSpec header = open(Testing::headerPartition());
    header.footerPartition = 1000000;
    ReadBack back(MxfBuilder().add(header).add(open(Testing::bodyPartition())));
    EXPECT_EQ(offsetsIn(back.file).size(), 2U);
    EXPECT_TRUE(back.warnings.tell("byte 1000000, past the end of the file"));
    EXPECT_TRUE(back.warnings.tell("what the file says does not lead to its partitions; 1 found"))
        << back.warnings.lines();
}

TEST(PartitionWalk, goesSetBySetWhereHeaderByteCountIsNotTrue) {
    for (const std::uint64_t count :
         {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{1} << 40, ~std::uint64_t{0}}) {
        PartitionSpec header = open(Testing::headerPartition());
        header.headerByteCount = count;
        ReadBack back(MxfBuilder().add(header).add(open(Testing::footerPartition(), {})));
        EXPECT_EQ(offsetsIn(back.file).size(), 2U) << count;
    }
}

struct Ending {
    const char* name;
    Bytes behind; ///< the metadata of the header partition
    const char* warning;
};
void PrintTo(const Ending& c, std::ostream* out) { *out << c.name; }

class PartitionWalkEnds : public ::testing::TestWithParam<Ending> {};

TEST_P(PartitionWalkEnds, andSaysWhere) {
    const PartitionSpec header = open(Testing::headerPartition(), {});
    const std::string place = "byte " + std::to_string(MxfBuilder().add(header).build().size());
    const Bytes next = MxfBuilder().add(open(Testing::bodyPartition(), {})).build();
    ReadBack back(MxfBuilder().add(open(Testing::headerPartition(), GetParam().behind)));
    EXPECT_EQ(offsetsIn(back.file), std::vector<std::uint64_t>{0});
    EXPECT_EQ(back.warnings.lines(), place + ": the search for partitions ended here" +
                                         GetParam().warning + " [partition-search-ended]\n");
    EXPECT_EQ(back.metadata().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(
    , PartitionWalkEnds,
    ::testing::Values(
        Ending{"AtZeros", Bytes(100), ", where no KLV begins, so there may be others"},
        Ending{"AtAKeyThatIsNotRegistered", klv(Testing::uuid(9), {1}),
               ", where no KLV begins, so there may be others"},
        Ending{"InAKey", {0x06, 0x0e}, ", in a KLV that runs past the end of the file"},
        Ending{"InALength", join({Testing::essenceKey(), {0x83, 0, 0}}),
               ", in a KLV that runs past the end of the file"},
        Ending{"AtALengthThatIsNone", join({Testing::essenceKey(), {0x80, 0, 0}}),
               ", where no KLV begins, so there may be others"},
        Ending{"InAValue", klv(Testing::essenceKey(), {1, 2}, 4, 3),
               ", in a KLV that runs past the end of the file"},
        Ending{"InTheLongestValue", klv(Testing::essenceKey(), {1, 2}, 9, ~std::uint64_t{0}),
               ", in a KLV that runs past the end of the file"}),
    Testing::nameOfCase<Ending>);

/// Counts how often something is read, and how many bytes at most.
class CountingSource : public DataIO::MemorySource {
public:
    CountingSource(const Bytes& bytes, std::size_t& reads, std::size_t& longest)
        : MemorySource(bytes.data(), bytes.size()), reads_(reads), longest_(longest) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        ++reads_;
        longest_ = std::max(longest_, count);
        return MemorySource::readAt(offset, to, count);
    }

private:
    std::size_t& reads_;
    std::size_t& longest_;
};

TEST(PartitionWalk, takesASmallReadForAKlvAndEndsAtTheLimit) {
    Bytes many;
    const Bytes one = klv(Testing::essenceKey(), Testing::repeat(0xEE, 40));
    for (std::size_t i = 0; i != greatestWalk; ++i) {
        many.insert(many.end(), one.begin(), one.end());
    }
    const Bytes bytes = MxfBuilder()
                            .add(open(Testing::headerPartition(), many))
                            .add(open(Testing::footerPartition(), {}))
                            .build();
    std::size_t reads = 0;
    std::size_t longest = 0;
    CountingSource source(bytes, reads, longest);
    DataIO::ReadWindow window(source);
    Testing::Collected warnings;
    const Partition header = findHeaderPartition(window, warnings);
    reads = longest = 0;
    const PartitionWalk walk = walkPartitions(window, header);
    EXPECT_EQ(walk.end, PartitionWalk::End::limit);
    EXPECT_TRUE(walk.partitions.empty());
    EXPECT_LE(reads, greatestWalk + 1);
    EXPECT_EQ(longest, KLV::Triplet::greatestHead);

    findPartitions(window, header, warnings);
    EXPECT_TRUE(warnings.tell("ended here after 100000 KLVs, so there may be others"))
        << warnings.lines();
}

TEST(PartitionWalk, passesOnTheErrorOfEveryRead) {
    const Bytes whole = unfinished().build();
    const unsigned failures = Testing::countFailingReads(whole, [](auto source) {
        Testing::Collected warnings;
        File file(std::move(source), MetaMetadata::Dictionary::builtIn(), warnings);
        EXPECT_EQ(file.partitions().size(), 3U);
    });
    EXPECT_LT(failures, 1000U);
    EXPECT_GT(failures, 10U);
}

TEST(PartitionWalk, findsTheFooterBehindFiftyGigabytes) {
    constexpr std::uint64_t size = std::uint64_t{50} * 1000 * 1000 * 1000;
    const PartitionSpec header =
        open(Testing::headerPartition(), join({Testing::essenceKey(), Testing::ber(size, 9)}));
    const Bytes front = MxfBuilder().add(header).build();
    PartitionSpec footer = open(Testing::footerPartition(Testing::smallMetadata()), {});
    footer.thisPartition = front.size() + size;
    const Bytes back = MxfBuilder().add(footer).build();
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "large.mxf").string();
    {
        const auto file =
            DataIO::FileDescriptor::owning(::open(path.c_str(), O_CREAT | O_WRONLY, 0600));
        const auto put = [&](const Bytes& bytes, std::uint64_t offset) {
            return ::pwrite(file.number(), bytes.data(), bytes.size(),
                            static_cast<off_t>(offset)) == static_cast<ssize_t>(bytes.size());
        };
        if (!file.isOpen() || !put(front, 0) || !put(back, front.size() + size)) {
            GTEST_SKIP() << "the file system of temporary files refuses a sparse file of 50 GB";
        }
    }
    Testing::Collected warnings;
    File file(path, MetaMetadata::Dictionary::builtIn(), warnings);
    const HeaderMetadata read = file.readMetadata();
    EXPECT_EQ(read.partition, 1U);
    EXPECT_GT(read.begin, size);
}

} // namespace
} // namespace Corvid::mxf
