#include "tests/mxf/rewrite/disk/OddFiles.h"
#include "host/mxf/rewrite/FileHashes.h"
#include "host/mxf/rewrite/InPlaceForm.h"
#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/NewFile.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tests/mxf/rewrite/CarryOut.h"
#include "tests/mxf/rewrite/disk/ClipOnDisk.h"
#include "tests/support/Paths.h"

#include <cstring>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

namespace Corvid::mxf {
namespace {

using Testing::clip;
using Testing::Disk;
using Testing::ModelFiles;
using Testing::Rewritable;
using Testing::OddFiles::OddFile;
using Testing::OddFiles::oddFiles;
using TestBytes = Testing::Bytes;

/// Edits one odd file in place, by inserted blocks and as a copy, on a model of a disk and on a
/// real one.
class EditsOddFiles : public ::testing::TestWithParam<OddFile> {
protected:
    static constexpr std::size_t fits = 3; // the fill has room for it
    static constexpr std::size_t isTooLong = 1500;

    /// A property of so many bytes in every copy.
    static Rewrite planned(Rewritable& of, std::size_t size, std::uint64_t blockSize) {
        FileEdit edit;
        for (const std::size_t copy : GetParam().copies) {
            edit.copies.push_back(Testing::longProperty(of.file, copy, 1, size));
        }
        return of.file.plan(edit, {100, blockSize});
    }

    /// What is inserted and not written may have any bytes in the naive file.
    static void expectBytes(const Bytes& found, const TestBytes& wanted) {
        ASSERT_EQ(found.size(), wanted.size());
        const auto [is, was] =
            std::mismatch(found.begin(), found.end(), wanted.begin(),
                          [](Types::u8 a, Types::u8 b) { return a == b || (a == 0 && b == 0xDD); });
        EXPECT_TRUE(is == found.end()) << "byte " << is - found.begin();
    }

    /// Essence, index tables and what counts bytes are as sound as before.
    static void expectSound(Rewritable& was, const TestBytes& after, bool isLonger) {
        Rewritable is(after);
        const auto before = essenceOf(was.file);
        const auto now = essenceOf(is.file);
        EXPECT_EQ(hashOf(is.source, now), hashOf(was.source, before));
        ASSERT_EQ(now.size(), before.size());
        for (std::size_t i = 0; i != now.size(); ++i) {
            EXPECT_EQ((now[i].begin - before[i].begin) % GetParam().step, 0U);
        }
        const Partitions& old = was.file.partitions();
        ASSERT_EQ(is.file.partitions().size(), old.size());
        for (std::size_t i = 0; i != old.size(); ++i) {
            const Partition& partition = is.file.partitions()[i];
            EXPECT_EQ((partition.offset() - old[i].offset()) % GetParam().step, 0U);
            EXPECT_EQ(partition.pack.kagSize, old[i].pack.kagSize);
            EXPECT_EQ(partition.pack.status, old[i].pack.status);
            EXPECT_EQ(partition.pack.footerPartition == 0, old[i].pack.footerPartition == 0);
        }
        for (const std::size_t copy : GetParam().copies) {
            const auto preface = is.file.layout(copy).find(
                Types::UUID({Testing::uuid(1).data(), Types::UUID::fixedSize}));
            ASSERT_TRUE(preface);
            EXPECT_EQ(is.file.layout(copy).items()[*preface].size() > isTooLong, isLonger);
        }
        // All that is asked of a file that may grow, again.
        constexpr std::size_t isTooLongAgain = 60000;
        if (GetParam().step < isTooLongAgain) {
            EXPECT_FALSE(planned(is, isTooLongAgain, 4096).insertions.empty());
        }
    }

    static std::uint64_t step(std::uint64_t blockSize) {
        return std::lcm(GetParam().step, blockSize);
    }

    const TestBytes old = GetParam().file().build();
};

/// The zeros of a file in whole blocks are holes.
void punch(FileSystem& files, int file, const TestBytes& bytes, std::uint64_t block) {
    const auto size = static_cast<std::ptrdiff_t>(block);
    const auto blocks = static_cast<std::ptrdiff_t>(bytes.size()) / size;
    for (std::ptrdiff_t i = 0; i != blocks; ++i) {
        const auto begin = bytes.begin() + i * size;
        if (std::all_of(begin, begin + size, [](unsigned char each) { return each == 0; })) {
            files.clear(file, static_cast<std::uint64_t>(i * size), block);
        }
    }
}

class OddFilesOnAModel : public EditsOddFiles {
protected:
    OddFilesOnAModel() {
        disk.names[clip] = 1;
        disk.files[1].assign(old.begin(), old.end());
        ModelFiles files(disk);
        punch(files, files.open(clip, FileSystem::Access::write), old, ModelFiles::blockSize);
        disk = files.now();
    }

    Rewrite insertion() {
        const Rewrite rewrite = planned(of, isTooLong, ModelFiles::blockSize);
        const auto form = inPlaceForm(rewrite, of.source, ModelFiles::blockSize);
        EXPECT_TRUE(form && form->insertions.size() == 1);
        return form.value_or(Rewrite());
    }

    Rewritable of{old};
    Disk disk;
};

TEST_P(OddFilesOnAModel, areEditedInPlace) {
    const Rewrite rewrite = planned(of, fits, 1);
    EXPECT_TRUE(rewrite.insertions.empty());
    ModelFiles files(disk);
    EXPECT_FALSE(rewriteInPlace(files, clip, rewrite, *files.find(clip)));
    expectBytes(files.now().content(clip), Testing::carryOut(old, rewrite));
    expectSound(of, Testing::carryOut(old, rewrite), false);
}

TEST_P(OddFilesOnAModel, growByInsertedBlocks) {
    const Rewrite rewrite = planned(of, isTooLong, ModelFiles::blockSize);
    ASSERT_EQ(rewrite.insertions.size(), GetParam().copies.size());
    for (const Insertion& each : rewrite.insertions) {
        EXPECT_EQ(each.size % step(ModelFiles::blockSize), 0U);
        EXPECT_LT(each.size, 1600 + 2 * step(ModelFiles::blockSize));
    }
    ModelFiles files(disk);
    EXPECT_FALSE(rewriteInPlace(files, clip, insertion(), *files.find(clip)));
    expectBytes(files.now().content(clip), Testing::carryOut(old, rewrite));
    expectSound(of, Testing::carryOut(old, rewrite), true);
}

TEST_P(OddFilesOnAModel, growByCopying) {
    const Rewrite rewrite = planned(of, isTooLong, 1);
    ModelFiles files(disk);
    replaceFile(files, clip, rewrite, *files.find(clip));
    expectBytes(files.now().content(clip), Testing::carryOut(old, rewrite));
    expectSound(of, Testing::carryOut(old, rewrite), true);
}

/// The machine dies in the midst of growth, and again when the edit is made once more.
TEST_P(OddFilesOnAModel, areRecoveredTwice) {
    const Rewrite rewrite = insertion();
    ModelFiles whole(disk);
    ASSERT_FALSE(Testing::change(whole, rewrite));
    const Bytes wanted = whole.now().content(clip);
    const std::size_t last = whole.calls;
    // From the insertion on to the last write, and some in between.
    constexpr std::size_t first = 7;
    std::size_t recoveries = 0;
    for (std::size_t dieAt = first; dieAt < last; dieAt += std::max<std::size_t>(last / 6, 1)) {
        Disk left = disk;
        for (const RecoveryGoal goal : {RecoveryGoal::before, RecoveryGoal::after}) {
            ModelFiles dying(left);
            dying.dieAt = dieAt;
            ASSERT_TRUE(Testing::change(dying, rewrite));
            ModelFiles again(dying.now());
            recoveries += recover(again, clip, goal) ? 1 : 0;
            EXPECT_TRUE(again.now().content(clip) ==
                        (goal == RecoveryGoal::before ? Bytes(old.begin(), old.end()) : wanted))
                << dieAt;
            left = again.now();
        }
    }
    EXPECT_GE(recoveries, 4U);
}

std::string nameOf(const ::testing::TestParamInfo<OddFile>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(, OddFilesOnAModel, ::testing::ValuesIn(oddFiles), nameOf);

class RealOddFiles : public EditsOddFiles {
protected:
    void SetUp() override {
        const OpenFile file(files, path, FileSystem::Access::create);
        block = files.insertionBlock(file.number());
        files.writeAt(file.number(), 0, {old.data(), old.size()});
        file.sync();
        if (block != 0 && std::string(GetParam().name) == "FragmentedAndSparse") {
            // A block in the midst of data is elsewhere on the disk, and zeros are holes.
            const auto essenceAt =
                static_cast<std::uint64_t>(std::find(old.begin(), old.end(), 0xEE) - old.begin());
            const std::uint64_t piece = (essenceAt / block + 4) * block;
            const Bytes bytes = file.read(piece, block);
            ASSERT_TRUE(files.insert(file.number(), piece, block));
            files.writeAt(file.number(), piece, viewOf(bytes));
            file.sync();
            files.collapse(file.number(), piece + block, block);
            punch(files, file.number(), old, block);
            file.sync();
            struct fiemap extents;
            std::memset(&extents, 0, sizeof extents);
            extents.fm_length = ~__u64{0};
            ASSERT_EQ(::ioctl(file.number(), FS_IOC_FIEMAP, &extents), 0);
            EXPECT_GT(extents.fm_mapped_extents, dataRuns(file));
            EXPECT_GT(dataRuns(file), 1U);
        }
    }

    std::size_t dataRuns(const OpenFile& file) {
        std::size_t runs = 0;
        std::uint64_t at = 0;
        while (const auto run = files.nextData(file.number(), at)) {
            at = run->end;
            ++runs;
        }
        return runs;
    }

    Bytes content() {
        const OpenFile file(files, path, FileSystem::Access::read);
        return file.read(0, file.status().size);
    }

    Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "clip.mxf").string();
    SystemFiles files;
    std::uint64_t block = 0;
    Rewritable of{old};
};

TEST_P(RealOddFiles, areEditedInPlace) {
    const Rewrite rewrite = planned(of, fits, 1);
    EXPECT_FALSE(rewriteInPlace(files, path, rewrite, *files.find(path)));
    expectBytes(content(), Testing::carryOut(old, rewrite));
}

TEST_P(RealOddFiles, growByInsertedBlocks) {
    if (block == 0) {
        GTEST_SKIP() << "the file system of temporary files inserts no blocks";
    }
    const Rewrite rewrite = planned(of, isTooLong, block);
    const auto form = inPlaceForm(rewrite, of.source, block);
    ASSERT_TRUE(form);
    ASSERT_EQ(form->insertions.size(), 1U);
    EXPECT_EQ(form->insertions[0].size % step(block), 0U);
    EXPECT_FALSE(rewriteInPlace(files, path, *form, *files.find(path)));
    expectBytes(content(), Testing::carryOut(old, rewrite));
    expectSound(of, Testing::carryOut(old, rewrite), true);
}

TEST_P(RealOddFiles, growByCopying) {
    const Rewrite rewrite = planned(of, isTooLong, 1);
    const std::size_t runs = dataRuns(OpenFile(files, path, FileSystem::Access::read));
    replaceFile(files, path, rewrite, *files.find(path));
    expectBytes(content(), Testing::carryOut(old, rewrite));
    EXPECT_GE(dataRuns(OpenFile(files, path, FileSystem::Access::read)), runs) << "holes stay";
}

INSTANTIATE_TEST_SUITE_P(, RealOddFiles, ::testing::ValuesIn(oddFiles), nameOf);

} // namespace
} // namespace Corvid::mxf
