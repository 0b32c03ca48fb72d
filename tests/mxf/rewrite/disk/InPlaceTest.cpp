#include "host/mxf/rewrite/disk/InPlace.h"

#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tests/mxf/ReadBack.h"
#include "tests/mxf/rewrite/disk/ClipOnDisk.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <iterator>

namespace Corvid::mxf {
namespace {

using Testing::after;
using Testing::change;
using Testing::clip;
using Testing::Disk;
using Testing::diskWithClip;
using Testing::journalName;
using Testing::messageOf;
using Testing::ModelFiles;
using Testing::oldBytes;
using Testing::pattern;
using Testing::rewriteOf;

TEST(InPlace, changesNothingWhereNoBlocksCanBeInserted) {
    ModelFiles files(diskWithClip());
    files.inserts = false;
    const FileStatus before = *files.find(clip);
    const Rewrite rewrite = {300, {{64, 64}}, {{64, Bytes(80, 0xBB)}}};
    const auto status = rewriteInPlace(files, clip, rewrite, *files.find(clip));
    EXPECT_EQ(files.now().content(clip), oldBytes);
    EXPECT_EQ(files.now().names.size(), 1U);
    // The attempt may have changed its time.
    ASSERT_TRUE(status);
    EXPECT_EQ(*status, *files.find(clip));
    EXPECT_NE(status->changed, before.changed);
}

TEST(InPlace, touchesNothingWhereNothingIsToBeDone) {
    ModelFiles files(diskWithClip());
    change(files, rewriteOf({}));
    EXPECT_EQ(files.calls, 0U);
}

TEST(InPlace, refusesAFileThatHasChangedSinceThePlan) {
    for (const int what : {0, 1, 2, 3}) {
        ModelFiles files(diskWithClip());
        FileStatus planned = *files.find(clip);
        what == 0   ? ++planned.size
        : what == 1 ? ++planned.inode
        : what == 2 ? static_cast<std::uint64_t>(++planned.modified)
                    : static_cast<std::uint64_t>(++planned.changed);
        EXPECT_EQ(messageOf([&] {
                      rewriteInPlace(files, clip, rewriteOf({{1, Bytes(1)}}), planned);
                  }),
                  "clip.mxf has changed since it was read, so nothing was written");
        EXPECT_EQ(files.calls, 0U);
    }
}

TEST(InPlace, refusesAFileThatChangesWhileTheRecoveryFileIsWritten) {
    /// Somebody else writes as soon as the recovery file is complete.
    class Changing : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        void syncFolderOf(const std::string& path) override {
            ModelFiles::syncFolderOf(path);
            const Bytes byte(1, 0x11);
            writeAt(1, 0, viewOf(byte));
        }
    };
    Changing files(diskWithClip());
    EXPECT_EQ(messageOf([&] {
                  change(files, rewriteOf({{100, Bytes(1)}}));
              }),
              "clip.mxf has changed since it was read, so nothing was written");
    EXPECT_EQ(files.now().content(clip)[100], oldBytes[100]);
    EXPECT_EQ(files.now().names.size(), 1U);
}

TEST(InPlace, refusesAFileThatIsNoLongerThere) {
    /// Another file takes the place of the clip when it has been opened.
    class Replacing : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        void lock(int) override {
            if (find(other)) {
                renameOver(other, clip);
            }
        }
        const std::string other = "other.mxf";
    };
    Disk disk = diskWithClip();
    disk.names["other.mxf"] = 2;
    disk.files[2] = oldBytes;
    Replacing files(disk);
    EXPECT_EQ(messageOf([&] {
                  change(files, rewriteOf({{100, Bytes(1)}}));
              }),
              "clip.mxf has changed since it was read, so nothing was written");
    EXPECT_EQ(files.now().names.size(), 1U);
}

TEST(InPlace, leavesAFileAloneThatAnotherProgramChanges) {
    ModelFiles files(diskWithClip());
    files.isLocked = true;
    EXPECT_EQ(messageOf([&] {
                  change(files, rewriteOf({{100, Bytes(1)}}));
              }),
              "another program has the lock");
    EXPECT_EQ(files.calls, 0U);
}

TEST(InPlace, leavesTheRecoveryFileOfAnotherChangeAlone) {
    /// Another change begins while this one writes its recovery file.
    class Racing : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        void renameToNew(const std::string& from, const std::string& to) override {
            const int theirs = open(to, Access::create);
            writeAt(theirs, 0, viewOf(oldBytes));
            sync(theirs);
            syncFolderOf(to);
            ModelFiles::renameToNew(from, to);
        }
    };
    Racing files(diskWithClip());
    EXPECT_EQ(messageOf([&] {
                  change(files, rewriteOf({{100, Bytes(1)}}));
              }),
              "can't rename to " + journalName);
    EXPECT_TRUE(needsRecovery(files, clip));
    EXPECT_EQ(files.now().content(clip), oldBytes);
    EXPECT_EQ(files.now().names.size(), 2U);
}

TEST(InPlace, replacesAnUnfinishedRecoveryFile) {
    Disk disk = diskWithClip();
    disk.names[journalName + ".new"] = 2;
    disk.files[2] = pattern(5000);
    ModelFiles files(disk);
    EXPECT_FALSE(needsRecovery(files, clip));
    change(files, rewriteOf({{1, Bytes(1)}}));
    EXPECT_EQ(files.now().names.size(), 1U);
}

TEST(InPlace, changesARealFileThroughALink) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "clip.mxf").string();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(oldBytes.data()), 300);
    const std::string link = (folder.path() / "link.mxf").string();
    std::filesystem::create_symlink("clip.mxf", link);
    SystemFiles files;
    const Rewrite rewrite = rewriteOf({{100, Bytes(5, 0xAA)}, {290, Bytes(60, 0xBB)}});
    const FileStatus status = *files.find(path);
    rewriteInPlace(files, link, rewrite, status);
    std::ifstream stream(path, std::ios::binary);
    const Bytes content(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(content, after(oldBytes, rewrite));
    EXPECT_EQ(files.find(path)->inode, status.inode);
    EXPECT_FALSE(needsRecovery(files, link));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
    EXPECT_NE(messageOf([&] { rewriteInPlace(files, link, rewrite, status); }), "");
}

} // namespace
} // namespace Corvid::mxf
