#include "host/mxf/rewrite/disk/NewFile.h"

#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tests/mxf/ReadBack.h"
#include "tests/mxf/rewrite/disk/ModelFiles.h"
#include "tests/support/Paths.h"

#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace Corvid::mxf {
namespace {

using Testing::Crash;
using Testing::Disk;
using Testing::messageOf;
using Testing::ModelFiles;
using Testing::pattern;

const std::string clip = "clip.mxf";
const std::string other = "other.mxf";

const Bytes oldBytes = pattern(300);
/// Inserts in two places, and writes before, in and after them.
const Rewrite rewrite = {300,
                         {{100, 40}, {200, 20}},
                         {{5, Bytes(1, 0xAA)}, {95, Bytes(50, 0xBB)}, {250, Bytes(9, 0xCC)}}};

Bytes newBytes() {
    Bytes bytes;
    const auto part = [&bytes](std::size_t begin, std::size_t end) {
        append(bytes, {oldBytes.data() + begin, end - begin});
    };
    part(0, 100);
    bytes.resize(140);
    part(100, 200);
    bytes.resize(260);
    part(200, 300);
    for (const ByteRange& range : rewrite.writes) {
        std::copy(range.bytes.begin(), range.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return bytes;
}

Disk diskWithClips() {
    Disk disk;
    disk.names = {{clip, 1}, {other, 2}};
    disk.files[1] = oldBytes;
    disk.files[2] = Bytes(10, 0x99);
    return disk;
}

enum class Way : unsigned char { newName, existingName, inItsPlace };

std::string nameOf(Way way) {
    return way == Way::newName ? "new.mxf" : way == Way::existingName ? other : clip;
}

/// @return whether the machine died.
bool carryOut(ModelFiles& files, Way way) {
    try {
        if (way == Way::inItsPlace) {
            replaceFile(files, clip, rewrite, *files.find(clip));
        } else {
            writeNewFile(files, clip, nameOf(way), rewrite, *files.find(clip));
        }
    } catch (const Crash&) {
        return true;
    }
    return false;
}

class NewFile : public ::testing::TestWithParam<Way> {};

/// Whether the name has the whole new file, or what it had before, and the clip is whole.
bool isSafe(const Disk& disk, Way way, bool finished) {
    const std::string name = nameOf(way);
    if (disk.names.count(clip) == 0 || disk.names.count(other) == 0) {
        return false;
    }
    if (way != Way::inItsPlace && disk.content(clip) != oldBytes) {
        return false;
    }
    const Disk before = diskWithClips();
    const bool isThere = disk.names.count(name) != 0;
    if (isThere && disk.content(name) == newBytes()) {
        return true;
    }
    if (finished) {
        return false;
    }
    return isThere ? before.names.count(name) != 0 && disk.content(name) == before.content(name)
                   : before.names.count(name) == 0;
}

TEST_P(NewFile, isWhole) {
    ModelFiles files(diskWithClips());
    EXPECT_FALSE(carryOut(files, GetParam()));
    EXPECT_EQ(files.now().content(nameOf(GetParam())), newBytes());
    EXPECT_EQ(files.now().names.size(), GetParam() == Way::newName ? 3U : 2U);
    EXPECT_TRUE(isSafe(files.now(), GetParam(), true));
}

TEST_P(NewFile, isThereWholeOrNotAtAllWhereverTheMachineDies) {
    for (std::size_t dieAt = 1;; ++dieAt) {
        ModelFiles files(diskWithClips());
        files.dieAt = dieAt;
        const bool died = carryOut(files, GetParam());
        for (const Disk& disk : files.images()) {
            EXPECT_TRUE(isSafe(disk, GetParam(), !died)) << "in call " << dieAt;
        }
        if (!died) {
            EXPECT_GT(dieAt, 9U);
            break;
        }
    }
}

TEST(WriteNewFile, looksForEachRunOfDataOnceAndKeepsTheHolesBetween) {
    constexpr std::uint64_t block = ModelFiles::blockSize;
    Disk disk;
    disk.names[clip] = 1;
    disk.files[1] = pattern(10 * block);
    std::fill_n(disk.files[1].begin() + 3 * block, 2 * block, Types::u8{0});
    disk.holes[1] = {3, 4};
    // One insertion into the first run of data, three into the second.
    const Rewrite longer = {
        10 * block,
        {{block, block}, {6 * block, block}, {7 * block, block}, {8 * block, block}},
        {}};
    ModelFiles files(disk);
    writeNewFile(files, clip, other, longer, *files.find(clip));
    EXPECT_EQ(files.lookups, 2U);
    Bytes expected = disk.files[1];
    for (const unsigned at : {1U, 7U, 9U, 11U}) {
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(at * block), block,
                        Types::u8{0});
    }
    EXPECT_EQ(files.now().content(other), expected);
    EXPECT_EQ(files.now().holes.at(files.now().names.at(other)),
              (std::set<std::uint64_t>{1, 4, 5, 7, 9, 11}));
}

TEST_P(NewFile, needsEachOfItsSyncs) {
    ModelFiles whole(diskWithClips());
    carryOut(whole, GetParam());
    EXPECT_EQ(whole.syncs, 2U);
    for (std::size_t liar = 1; liar <= whole.syncs; ++liar) {
        bool safe = true;
        for (std::size_t dieAt = 1; safe; ++dieAt) {
            ModelFiles files(diskWithClips());
            files.dieAt = dieAt;
            files.syncThatLies = liar;
            const bool died = carryOut(files, GetParam());
            for (const Disk& disk : files.images()) {
                safe = safe && isSafe(disk, GetParam(), !died);
            }
            if (!died) {
                break;
            }
        }
        EXPECT_FALSE(safe) << "sync " << liar;
    }
}

TEST_P(NewFile, leavesNothingWhereACallFails) {
    ModelFiles whole(diskWithClips());
    carryOut(whole, GetParam());
    for (std::size_t failAt = 1; failAt != whole.calls; ++failAt) {
        ModelFiles files(diskWithClips());
        files.failAt = failAt;
        EXPECT_EQ(messageOf([&] { carryOut(files, GetParam()); }), "no space left");
        EXPECT_EQ(files.now().names, diskWithClips().names) << failAt;
        EXPECT_TRUE(isSafe(files.now(), GetParam(), false));
    }
}

std::string nameOfWay(const ::testing::TestParamInfo<Way>& way) {
    return way.param == Way::newName        ? "UnderANewName"
           : way.param == Way::existingName ? "UnderAnExistingName"
                                            : "InThePlaceOfTheOld";
}

INSTANTIATE_TEST_SUITE_P(, NewFile,
                         ::testing::Values(Way::newName, Way::existingName, Way::inItsPlace),
                         nameOfWay);

TEST(NewFileChecks, refuseAFileThatHasChangedSinceThePlan) {
    ModelFiles files(diskWithClips());
    FileStatus planned = *files.find(clip);
    ++planned.modified;
    const char* const message = "clip.mxf has changed since it was read, so nothing was written";
    EXPECT_EQ(messageOf([&] { writeNewFile(files, clip, "x", rewrite, planned); }), message);
    EXPECT_EQ(messageOf([&] { replaceFile(files, clip, rewrite, planned); }), message);
    EXPECT_EQ(files.calls, 0U);
}

TEST(NewFileChecks, refuseAFileWhoseChangeWasNotFinished) {
    for (const std::string& name : {clip, other}) {
        Disk disk = diskWithClips();
        disk.names["." + name + ".corvid-recovery"] = 2;
        ModelFiles files(disk);
        EXPECT_EQ(messageOf([&] { carryOut(files, Way::existingName); }),
                  "an earlier change of " + name + " was not finished; run corvid recover first");
        EXPECT_EQ(files.calls, 0U);
    }
}

TEST(NewFileChecks, refuseToReplaceWhatMayNotBeWritten) {
    class ReadOnly : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        int open(const std::string& path, Access access) override {
            return path == clip && access == Access::write
                       ? throw Exceptions::IOError("read only", CORVID_HERE)
                       : ModelFiles::open(path, access);
        }
    };
    ReadOnly files(diskWithClips());
    EXPECT_EQ(messageOf([&] { carryOut(files, Way::inItsPlace); }), "read only");
    EXPECT_EQ(files.calls, 0U);
    EXPECT_FALSE(carryOut(files, Way::newName));
}

TEST(NewFileChecks, refuseToReplaceWhatAnotherProgramChanges) {
    ModelFiles files(diskWithClips());
    files.isLocked = true;
    EXPECT_EQ(messageOf([&] { carryOut(files, Way::inItsPlace); }), "another program has the lock");
    EXPECT_EQ(files.calls, 0U);
    EXPECT_FALSE(carryOut(files, Way::newName));
}

TEST(NewFileChecks, leaveTheUnfinishedFileOfAnotherProgramAlone) {
    /// Another program begins to write the same file.
    class Racing : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        void copyRange(int from, std::uint64_t offset, int to, std::uint64_t toOffset,
                       std::uint64_t size) override {
            ModelFiles::copyRange(from, offset, to, toOffset, size);
            remove(temporary);
            open(temporary, Access::create);
        }
        const std::string temporary = ".other.mxf.corvid-new";
    };
    Racing files(diskWithClips());
    EXPECT_EQ(messageOf([&] { carryOut(files, Way::existingName); }),
              "another program writes other.mxf too");
    EXPECT_EQ(files.now().names.count(files.temporary), 1U);
    EXPECT_EQ(files.now().content(other), Bytes(10, 0x99));
}

TEST(NewFileChecks, refuseToBreakHardLinksUnasked) {
    ModelFiles files(diskWithClips());
    FileStatus planned = *files.find(clip);
    planned.links = 3;
    EXPECT_EQ(messageOf([&] { replaceFile(files, clip, rewrite, planned); }),
              "clip.mxf has 3 hard links, and the others would keep the old file, so nothing was "
              "written");
    EXPECT_EQ(files.calls, 0U);
    replaceFile(files, clip, rewrite, planned, true);
    EXPECT_EQ(files.now().content(clip), newBytes());
}

TEST(NewFileChecks, reportProgressAndLetItGiveUp) {
    ModelFiles files(diskWithClips());
    std::vector<std::uint64_t> reports;
    writeNewFile(files, clip, "new.mxf", rewrite, *files.find(clip),
                 [&](std::uint64_t done, std::uint64_t all) {
                     EXPECT_EQ(all, 300U);
                     reports.push_back(done);
                 });
    EXPECT_EQ(reports, (std::vector<std::uint64_t>{100, 200, 300}));
    struct Enough {};
    EXPECT_THROW(writeNewFile(files, clip, "newer.mxf", rewrite, *files.find(clip),
                              [](std::uint64_t, std::uint64_t) { throw Enough(); }),
                 Enough);
    EXPECT_EQ(files.now().names.size(), 3U);
}

Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

class RealFiles : public ::testing::Test {
protected:
    RealFiles() : path((folder.path() / "clip.mxf").string()) {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(oldBytes.data()), 300);
    }

    Testing::TemporaryDir folder;
    std::string path;
    SystemFiles files;
};

TEST_F(RealFiles, areWrittenUnderAnotherName) {
    const std::string to = (folder.path() / "new.mxf").string();
    writeNewFile(files, path, to, rewrite, *files.find(path));
    EXPECT_EQ(contentOf(to), newBytes());
    EXPECT_EQ(contentOf(path), oldBytes);
    struct stat like {};
    struct stat made {};
    EXPECT_EQ(::stat(path.c_str(), &like), 0);
    EXPECT_EQ(::stat(to.c_str(), &made), 0);
    EXPECT_EQ(like.st_mode, made.st_mode);
}

TEST_F(RealFiles, leaveNothingWhereTheProcessDiesWhileTheyAreCopied) {
    const int probe = ::open(folder.path().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (probe < 0) {
        GTEST_SKIP() << "the file system of temporary files has no files without a name";
    }
    ::close(probe);
    std::size_t reports = 0;
    const auto onlyTheOld = [&](std::uint64_t, std::uint64_t) {
        ++reports;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
    };
    replaceFile(files, path, rewrite, *files.find(path), false, onlyTheOld);
    EXPECT_EQ(contentOf(path), newBytes());
    EXPECT_GT(reports, 0U);
}

TEST_F(RealFiles, keepTheirAttributesInTheirPlace) {
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    const bool hasAttributes = ::setxattr(path.c_str(), "user.reel", "A001", 4, 0) == 0;
    const std::string link = (folder.path() / "link.mxf").string();
    std::filesystem::create_symlink("clip.mxf", link);
    const FileStatus before = *files.find(path);
    replaceFile(files, link, rewrite, before);
    EXPECT_EQ(contentOf(path), newBytes());
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_NE(files.find(path)->inode, before.inode);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    if (hasAttributes) {
        char value[8] = {};
        EXPECT_EQ(::getxattr(path.c_str(), "user.reel", value, sizeof value), 4);
        EXPECT_STREQ(value, "A001");
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

TEST_F(RealFiles, keepTheirHoles) {
    constexpr std::uint64_t size = std::uint64_t{1} << 33; // 8 GiB, of which 300 bytes are there
    std::filesystem::resize_file(path, size);
    const std::string to = (folder.path() / "new.mxf").string();
    Rewrite large = rewrite;
    large.oldSize = size;
    large.writes.push_back({size + 50, Bytes(5, 0xDD)});
    writeNewFile(files, path, to, large, *files.find(path));
    EXPECT_EQ(std::filesystem::file_size(to), size + 60);
    struct stat made {};
    EXPECT_EQ(::stat(to.c_str(), &made), 0);
    EXPECT_LT(made.st_blocks, 1000);
    const OpenFile file(files, to, FileSystem::Access::read);
    EXPECT_EQ(file.read(size + 48, 8), (Bytes{0, 0, 0xDD, 0xDD, 0xDD, 0xDD, 0xDD, 0}));
}

} // namespace
} // namespace Corvid::mxf
