#include "host/mxf/HeaderMetadataWriter.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <iterator>
#include <map>
#include <set>

namespace Corvid::mxf {
namespace {

struct Expected {
    std::size_t sets = 0;
    std::size_t dark = 0;
};

/// The numbers of sets that the folder's own list of files gives, by file name.
std::map<std::string, Expected> expectations(const std::filesystem::path& folder) {
    std::map<std::string, Expected> result;
    std::ifstream list(folder / "README.md");
    for (std::string line; std::getline(list, line);) {
        std::vector<std::string> cells;
        std::size_t from = 0;
        for (std::size_t bar; (bar = line.find(" | ", from)) != std::string::npos; from = bar + 3) {
            cells.push_back(line.substr(from, bar - from));
        }
        if (cells.size() > 6 && cells[0].find(".mxf") != std::string::npos) {
            result[cells[0].substr(2)] = {std::stoul(cells[5]), std::stoul(cells[6])};
        }
    }
    return result;
}

/// What a plain walk from KLV to KLV finds: the bytes of each, fill left out.
struct Klvs {
    Klvs(const Testing::Bytes& bytes, std::uint64_t begin, std::uint64_t end) {
        for (auto at = static_cast<std::size_t>(begin); at < end;) {
            const bool isLong = bytes[at + 16] >= 0x80;
            const std::size_t more = isLong ? bytes[at + 16] & 0x7FU : 0;
            std::size_t length = isLong ? 0 : bytes[at + 16];
            for (std::size_t i = 0; i != more; ++i) {
                length = length << 8 | bytes[at + 17 + i];
            }
            const std::size_t size = 17 + more + length;
            const std::string klv(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                  bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
            const std::string fillItem("\x03\x01\x02\x10\x01", 5);
            const std::string primerPack("\x0d\x01\x02\x01\x01\x05", 6);
            if (klv.compare(8, primerPack.size(), primerPack) == 0) {
                primer = klv.substr(17 + more + 8);
            } else if (klv.compare(8, fillItem.size(), fillItem) != 0) {
                sets.insert(klv);
            }
            at += size;
        }
    }

    std::string primer; ///< its entries
    std::multiset<std::string> sets;
};

class Samples : public ::testing::Test {
protected:
    void SetUp() override {
        folder_ = Testing::samplesDir();
        if (folder_.empty()) {
            GTEST_SKIP() << "no folder of sample files";
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            if (entry.path().extension() == ".mxf") {
                files_.push_back(entry.path());
            }
        }
    }
    std::filesystem::path folder_;
    std::vector<std::filesystem::path> files_;
};

TEST_F(Samples, haveAsManySetsInTheHeaderAsTheirListSays) {
    const auto expected = expectations(folder_);
    ASSERT_EQ(expected.size(), files_.size());
    for (const auto& [name, numbers] : expected) {
        SCOPED_TRACE(name);
        Testing::Collected warnings;
        File file((folder_ / name).string(), MetaMetadata::Dictionary::builtIn(), warnings);
        const HeaderMetadata read = file.readMetadata(PartitionChoice::header());
        const auto& metadata = *read.metadata;
        EXPECT_TRUE(read.isWhole) << warnings.lines();
        const auto dark =
            static_cast<std::size_t>(std::distance(metadata.darkBegin(), metadata.darkEnd()));
        EXPECT_EQ(metadata.size() + dark, numbers.sets)
            << "dark: " << dark << " " << warnings.lines();
        EXPECT_EQ(metadata.find(Metadata::Structural::StructuralMetadataKeys::preface()).size(),
                  1U);
    }
}

TEST_F(Samples, giveEverySetTheBytesThatItWasReadFrom) {
    for (const auto& path : files_) {
        SCOPED_TRACE(path.filename().string());
        std::ifstream stream(path, std::ios::binary);
        Testing::ReadBack back(Testing::Bytes(std::istreambuf_iterator<char>(stream), {}));
        auto& metadata = back.metadata();
        // The file has the sets in the order of the partition, with fill and dark sets
        // between.
        auto from = back.bytes.cbegin() + static_cast<std::ptrdiff_t>(back.read.begin);
        const auto end = back.bytes.cbegin() + static_cast<std::ptrdiff_t>(back.read.end);
        for (const Metadata::MetadataSet* set : metadata) {
            const Testing::Bytes written = Testing::bytesOf(*set, metadata);
            const auto found = std::search(from, end, written.begin(), written.end());
            EXPECT_NE(found, end) << nameOfSet(set->key(), set->metaMetadataSet());
            if (found != end) {
                from = found + static_cast<std::ptrdiff_t>(written.size());
            }
        }
    }
}

TEST_F(Samples, areWrittenWithEverySetThatTheyHold) {
    for (const auto& path : files_) {
        SCOPED_TRACE(path.filename().string());
        std::ifstream stream(path, std::ios::binary);
        Testing::ReadBack back(Testing::Bytes(std::istreambuf_iterator<char>(stream), {}));
        auto& metadata = back.metadata();
        DataIO::Memory::MemoryDataSink sink;
        PartitionPack pack = back.file.partitions()[0].pack;
        pack.kagSize = 256;
        pack.thisPartition = pack.footerPartition = 0;
        writeHeaderPartition(pack, HeaderMetadataWriter(metadata), sink);
        Testing::ReadBack again(
            Testing::Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()));

        EXPECT_EQ(again.metadata().size(), metadata.size());
        EXPECT_TRUE(again.read.isWhole);
        EXPECT_EQ(again.read.end, again.bytes.size());
        const Klvs old(back.bytes, back.read.begin, back.read.end);
        const Klvs written(again.bytes, again.read.begin, again.read.end);
        EXPECT_EQ(old.sets.size(), written.sets.size());
        EXPECT_TRUE(old.sets == written.sets);
        EXPECT_EQ(written.primer.compare(0, old.primer.size(), old.primer), 0);
        EXPECT_FALSE(again.warnings.tell("the tag has its registered meaning"));
    }
}

TEST_F(Samples, tellOfPartitionsPastTheEndOnlyWhereTheyAreCut) {
    for (const auto& path : files_) {
        SCOPED_TRACE(path.filename().string());
        Testing::Collected warnings;
        File file(path.string(), MetaMetadata::Dictionary::builtIn(), warnings);
        const Partitions& all = file.partitions();
        const bool isCut = all[0].pack.footerPartition >= std::filesystem::file_size(path);
        EXPECT_EQ(warnings.tell("past the end of the file"), isCut) << warnings.lines();
        if (!isCut && all[0].pack.footerPartition != 0) {
            EXPECT_EQ(all[all.size() - 1].offset(), all[0].pack.footerPartition);
        }
    }
}

} // namespace
} // namespace Corvid::mxf
