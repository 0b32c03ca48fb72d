#include "host/dataio/FileDescriptor.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/FailingSource.h"
#include "tests/support/Paths.h"

#include <fcntl.h>
#include <fstream>
#include <random>
#include <unistd.h>

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using Testing::join;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::ReadBack;

/// A file with a bit of everything.
Bytes richFile() {
    const Bytes dark = Testing::klv(Testing::uuid(99), Testing::repeat(1, 40));
    const Bytes group =
        Testing::set(Testing::hex("06.0e.2b.34.02.53.01.01.0f.55.66.77.01.02.03.04"), 9,
                     {Testing::property(0x8001, {1, 2, 3})});
    const Bytes metadata = join({Testing::standardPrimer(), Testing::fill(60), Testing::smallSets(),
                                 dark, group, Testing::fill(20)});
    PartitionSpec header = Testing::headerPartition(metadata);
    header.behindMetadata = Testing::klv(Testing::essenceKey(), Testing::repeat(0xEE, 100));
    return MxfBuilder()
        .runIn({1, 2, 3})
        .add(header)
        .add(Testing::bodyPartition())
        .add(Testing::footerPartition(metadata))
        .withRandomIndexPack()
        .build();
}

/// Reads all there is; what the library refuses must be an exception of its own.
/// @return whether metadata was read.
bool readAll(const Bytes& bytes) {
    try {
        ReadBack back(bytes);
        back.file.partitions();
        back.metadata();
        return true;
    } catch (const Exceptions::BaseException&) {
        return false;
    }
}

TEST(HostileInput, cutAnywhereIsReadAsFarAsItGoesOrRefused) {
    const Bytes whole = richFile();
    ASSERT_TRUE(readAll(whole));
    for (std::size_t size = 0; size != whole.size(); ++size) {
        // In a block of its own size, so that a tool that checks memory sees a step beyond it.
        EXPECT_EQ(readAll(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                  size >= 3 + 108 + 17 + 3)
            << size;
    }
}

TEST(HostileInput, withAnyByteChangedIsReadOrRefused) {
    const Bytes whole = richFile();
    std::mt19937 random(1);
    Bytes changed = whole;
    for (std::size_t place = 0; place != whole.size(); ++place) {
        for (const unsigned value :
             {0U, 0x7FU, 0x80U, 0xFFU, static_cast<unsigned>(random() & 0xFF)}) {
            changed[place] = static_cast<unsigned char>(value);
            readAll(changed);
        }
        changed[place] = whole[place];
    }
}

TEST(HostileInput, ofRandomChangesIsReadOrRefused) {
    const Bytes whole = richFile();
    std::mt19937 random(2);
    for (int round = 0; round != 3000; ++round) {
        Bytes changed = whole;
        for (auto left = 1 + random() % 20; left != 0; --left) {
            changed[random() % changed.size()] = static_cast<unsigned char>(random());
        }
        readAll(changed);
    }
}

TEST(HostileInput, passesOnTheErrorOfEveryRead) {
    const Bytes metadata =
        join({Testing::standardPrimer(), Testing::fill(70'000), Testing::smallSets()});
    const Bytes whole = MxfBuilder()
                            .add(Testing::headerPartition(metadata))
                            .add(Testing::bodyPartition(metadata))
                            .add(Testing::footerPartition())
                            .withRandomIndexPack()
                            .build();
    const unsigned failures = Testing::countFailingReads(whole, [](auto source) {
        Testing::Collected warnings;
        File(std::move(source), MetaMetadata::Dictionary::builtIn(), warnings).readMetadata();
    });
    EXPECT_LT(failures, 1000U);
    EXPECT_GT(failures, 5U);
}

/// Notes which bytes are read.
class WatchedSource : public DataIO::MemorySource {
public:
    WatchedSource(const Bytes& bytes, std::vector<bool>& seen)
        : MemorySource(bytes.data(), bytes.size()), seen_(seen) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        const std::size_t got = MemorySource::readAt(offset, to, count);
        for (std::size_t i = 0; i != got; ++i) {
            seen_[offset + i] = true;
        }
        return got;
    }

private:
    std::vector<bool>& seen_;
};

TEST(File, readsNoEssence) {
    const Bytes essence = Testing::klv(Testing::essenceKey(), Testing::repeat(0xEE, 300'000));
    MxfBuilder builder;
    for (const unsigned char kind : Bytes{2, 3, 3, 4}) {
        PartitionSpec spec = Testing::headerPartition();
        spec.kind = kind;
        spec.behindMetadata = kind == 4 ? Bytes{} : essence;
        builder.add(spec);
    }
    builder.withRandomIndexPack();
    const Bytes bytes = builder.build();
    for (std::size_t number = 0; number != 4; ++number) {
        std::vector<bool> seen(bytes.size());
        Testing::Collected warnings;
        File file(Templates::auto_ptr<DataIO::RandomAccessSource>(new WatchedSource(bytes, seen)),
                  MetaMetadata::Dictionary::builtIn(), warnings);
        EXPECT_EQ(file.readMetadata(PartitionChoice::numbered(number)).metadata->size(), 2U);
        // The search for the header partition takes 4 KiB, whatever is in them.
        const auto read =
            static_cast<std::size_t>(std::count(seen.begin() + 4200, seen.end(), true));
        EXPECT_LT(read, 3000U);
    }
}

/// Counts the bytes that are read.
class CountingSource : public DataIO::MemorySource {
public:
    CountingSource(const Bytes& bytes, std::uint64_t& read)
        : MemorySource(bytes.data(), bytes.size()), read_(read) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        const std::size_t got = MemorySource::readAt(offset, to, count);
        read_ += got;
        return got;
    }

private:
    std::uint64_t& read_;
};

/// Many partitions, each of which claims the bytes of those after it.
struct Claim {
    const char* name;
    PartitionSpec (*partition)(std::uint32_t left); ///< `left` bytes follow its metadata
};
void PrintTo(const Claim& c, std::ostream* out) { *out << c.name; }

class OverlappingPartitions : public ::testing::TestWithParam<Claim> {};

TEST_P(OverlappingPartitions, areReadInProportionToTheFile) {
    constexpr std::uint32_t count = 400;
    const std::size_t size = MxfBuilder().add(GetParam().partition(0)).build().size();
    MxfBuilder builder;
    for (std::uint32_t i = count; i-- != 0;) {
        PartitionSpec partition = GetParam().partition(static_cast<std::uint32_t>(i * size));
        partition.kind = i + 1 == count ? 2 : 3;
        builder.add(partition);
    }
    const Bytes bytes = builder.withRandomIndexPack().build();
    std::uint64_t read = 0;
    Testing::Collected warnings;
    File file(Templates::auto_ptr<DataIO::RandomAccessSource>(new CountingSource(bytes, read)),
              MetaMetadata::Dictionary::builtIn(), warnings);
    EXPECT_EQ(file.partitions().size(), count);
    Testing::messageOf([&] { file.readMetadata(); });
    EXPECT_LT(read, 20 * bytes.size());
}

INSTANTIATE_TEST_SUITE_P(
    , OverlappingPartitions,
    ::testing::Values(Claim{"ByTheirPacks",
                            [](std::uint32_t left) {
                                PartitionSpec spec = Testing::bodyPartition();
                                spec.essenceContainerCount = 0xFFFFFFFF;
                                spec.packLength = left + 88;
                                return spec;
                            }},
                      Claim{"ByTheirFill",
                            [](std::uint32_t left) {
                                PartitionSpec spec = Testing::bodyPartition();
                                const Bytes fill = Testing::fill(0);
                                spec.behindPack = Testing::klv(
                                    Bytes(fill.begin(), fill.begin() + 16), {}, 4, left);
                                return spec;
                            }},
                      Claim{"ByTheirPrimers",
                            [](std::uint32_t left) {
                                PartitionSpec spec = Testing::bodyPartition(
                                    Testing::klv(Testing::primerKey(), {}, 4, left));
                                spec.headerByteCount = spec.metadata.size() + left;
                                return spec;
                            }},
                      Claim{"ByTheirSets",
                            [](std::uint32_t left) {
                                PartitionSpec spec = Testing::bodyPartition(
                                    join({Testing::standardPrimer(),
                                          Testing::klv(Testing::uuid(9), {}, 4, left)}));
                                spec.headerByteCount = spec.metadata.size() + left;
                                return spec;
                            }}),
    Testing::nameOfCase<Claim>);

class SparseFile : public ::testing::Test {
protected:
    /// Writes the pieces at their offsets. @return whether the file system takes such a file.
    bool write(const std::vector<std::pair<std::uint64_t, Bytes>>& pieces, std::uint64_t size) {
        const auto file =
            DataIO::FileDescriptor::owning(::open(path().c_str(), O_CREAT | O_WRONLY, 0600));
        bool done = file.isOpen() && ::ftruncate(file.number(), static_cast<off_t>(size)) == 0;
        for (const auto& [offset, bytes] : pieces) {
            done =
                done && ::pwrite(file.number(), bytes.data(), bytes.size(),
                                 static_cast<off_t>(offset)) == static_cast<ssize_t>(bytes.size());
        }
        return done;
    }
    std::string path() const { return (folder_.path() / "large.mxf").string(); }
    HeaderMetadata read(PartitionChoice choice = PartitionChoice::automatic()) {
        File file(path(), MetaMetadata::Dictionary::builtIn(), warnings);
        return file.readMetadata(choice);
    }

    Testing::Collected warnings;

private:
    Testing::TemporaryDir folder_;
};

constexpr std::uint64_t hundredGigabytes = std::uint64_t{120} * 1000 * 1000 * 1000;

TEST_F(SparseFile, ofMoreThanHundredGigabytesIsReadAsASmallOne) {
    PartitionSpec header = Testing::headerPartition(join({Testing::standardPrimer()}));
    header.status = 1;
    header.headerByteCount = 0;
    header.footerPartition = hundredGigabytes;
    header.behindMetadata = join({Testing::essenceKey(), Testing::ber(hundredGigabytes / 2, 9)});
    PartitionSpec footer = Testing::footerPartition(Testing::smallMetadata());
    footer.thisPartition = hundredGigabytes;
    footer.footerPartition = hundredGigabytes;
    const Bytes tail = MxfBuilder().add(footer).withRandomIndexPack({0, hundredGigabytes}).build();
    if (!write({{0, MxfBuilder().add(header).build()}, {hundredGigabytes, tail}},
               hundredGigabytes + tail.size())) {
        GTEST_SKIP() << "the file system of temporary files refuses a sparse file of 120 GB";
    }
    const HeaderMetadata read = this->read();
    EXPECT_EQ(read.partition, 1U);
    EXPECT_EQ(read.metadata->size(), 2U);
    EXPECT_GT(read.begin, hundredGigabytes);
    EXPECT_EQ(warnings.lines(), "");
}

TEST_F(SparseFile, withASetBeyondTheLimitIsRefused) {
    PartitionSpec header = Testing::headerPartition(
        join({Testing::smallMetadata(), Testing::structuralKey(Testing::identificationSet),
              Testing::ber(std::uint64_t{1} << 32, 9)}));
    header.headerByteCount = std::uint64_t{1} << 33;
    if (!write({{0, MxfBuilder().add(header).build()}}, hundredGigabytes)) {
        GTEST_SKIP() << "the file system of temporary files refuses a sparse file of 120 GB";
    }
    const std::string message = Testing::messageOf([&] { read(PartitionChoice::header()); });
    EXPECT_NE(message.find("4294967296 bytes, expected at most 268435456"), std::string::npos)
        << message;
}

TEST_F(SparseFile, withASetBeyondTheLimitAndTheMetadataIsNotWalkedThrough) {
    PartitionSpec header = Testing::headerPartition(
        join({Testing::smallMetadata(), Testing::structuralKey(Testing::identificationSet),
              Testing::ber(hundredGigabytes / 2, 9)}));
    if (!write({{0, MxfBuilder().add(header).build()}}, hundredGigabytes)) {
        GTEST_SKIP() << "the file system of temporary files refuses a sparse file of 120 GB";
    }
    const HeaderMetadata read = this->read(PartitionChoice::header());
    EXPECT_EQ(read.metadata->size(), 2U);
    EXPECT_FALSE(read.isWhole);
}

TEST_F(SparseFile, withALyingByteCountEndsWhereTheHoleBegins) {
    PartitionSpec header = Testing::headerPartition();
    header.headerByteCount = hundredGigabytes / 2;
    if (!write({{0, MxfBuilder().add(header).build()}}, hundredGigabytes)) {
        GTEST_SKIP() << "the file system of temporary files refuses a sparse file of 120 GB";
    }
    const HeaderMetadata read = this->read();
    EXPECT_EQ(read.metadata->size(), 2U);
    EXPECT_FALSE(read.isWhole);
}

} // namespace
} // namespace Corvid::mxf
