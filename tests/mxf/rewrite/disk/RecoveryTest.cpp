#include "host/mxf/rewrite/disk/Journal.h"
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
using Testing::rewriteOf;

/// A disk as it is when the machine dies in the midst of the change.
Disk halfChanged() {
    ModelFiles files(diskWithClip());
    files.dieAt = 8; // after the first of two writes
    EXPECT_TRUE(change(files, rewriteOf({{100, Bytes(5, 0xAA)}, {200, Bytes(1, 0xBB)}})));
    const Disk disk = files.now();
    EXPECT_EQ(disk.names.count(journalName), 1U);
    EXPECT_NE(disk.content(clip), oldBytes);
    return disk;
}

struct Refused {
    const char* name;
    void (*harm)(Disk& disk);
    const char* message;
};
void PrintTo(const Refused& c, std::ostream* out) { *out << c.name; }

class RefusesRecovery : public ::testing::TestWithParam<Refused> {};

TEST(Recovery, saysWhereTheRecoveryFileShouldBe) {
    ModelFiles files(diskWithClip());
    files.dieAt = 13; // after the first of two writes
    const Rewrite rewrite = rewriteOf({{100, Bytes(5, 0xAA)}, {200, Bytes(1, 0xBB)}});
    EXPECT_TRUE(change(files, rewrite, "elsewhere"));
    Disk disk = files.now();
    EXPECT_NE(disk.content(clip), oldBytes);
    const auto journal = disk.names.extract("elsewhere/.clip.mxf-1.corvid-recovery");
    ModelFiles lost(disk);
    EXPECT_TRUE(needsRecovery(lost, clip));
    EXPECT_EQ(messageOf([&] { recover(lost, clip, RecoveryGoal::before); }),
              "the recovery file elsewhere/.clip.mxf-1.corvid-recovery, to which " + journalName +
                  " points, is not there");
    disk.names["elsewhere/.clip.mxf-1.corvid-recovery"] = journal.mapped();
    disk.files[disk.names[journalName]].pop_back();
    ModelFiles damaged(disk);
    EXPECT_EQ(messageOf([&] { recover(damaged, clip, RecoveryGoal::before); }),
              journalName + " is damaged: it does not end with a line");
    EXPECT_EQ(damaged.calls + lost.calls, 0U);
}

TEST(Recovery, isNotNeededWhereThePointerWasNotMade) {
    const std::string journal = "elsewhere/.clip.mxf-1.corvid-recovery";
    const Rewrite rewrite = rewriteOf({{100, Bytes(5, 0xAA)}});
    ModelFiles files(diskWithClip());
    files.dieAt = 6; // after the journal has its name
    EXPECT_TRUE(change(files, rewrite, "elsewhere"));
    Disk disk = files.now();
    ASSERT_EQ(disk.names.count(journal), 1U);
    ASSERT_EQ(disk.names.count(journalName), 0U);
    ModelFiles again(disk);
    EXPECT_FALSE(change(again, rewrite, "elsewhere"));
    EXPECT_EQ(again.now().content(clip), after(oldBytes, rewrite));
    EXPECT_EQ(again.now().names.size(), 1U);
    // It may be needed still where the file has changed: its pointer may have been lost.
    ModelFiles changed(disk);
    const int file = changed.open(clip, FileSystem::Access::write);
    changed.writeAt(file, 0, viewOf(Bytes(1, 0xAA)));
    EXPECT_EQ(messageOf([&] { change(changed, rewrite, "elsewhere"); }),
              journal + " is there already, the recovery file of an earlier change to which "
                        "nothing beside the file points");
    EXPECT_EQ(changed.now().names, disk.names);
}

TEST(Recovery, waitsForTheProgramThatChangesTheFile) {
    ModelFiles files(halfChanged());
    files.isLocked = true;
    EXPECT_EQ(messageOf([&] { recover(files, clip, RecoveryGoal::before); }),
              "another program has the lock");
    EXPECT_EQ(files.calls, 0U);
}

TEST(Recovery, hasNothingToDoWhereTheChangeEndsMeanwhile) {
    class Ending : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        void lock(int) override { remove(journalName); }
    };
    Ending files(halfChanged());
    EXPECT_FALSE(recover(files, clip, RecoveryGoal::before));
}

TEST_P(RefusesRecovery, andChangesNothing) {
    Disk disk = halfChanged();
    GetParam().harm(disk);
    ModelFiles files(disk);
    for (const RecoveryGoal goal : {RecoveryGoal::before, RecoveryGoal::after}) {
        EXPECT_EQ(messageOf([&] { recover(files, clip, goal); }), GetParam().message);
    }
    EXPECT_EQ(files.calls, 0U);
}

Bytes& journalOn(Disk& disk) { return disk.files[disk.names[journalName]]; }
Bytes& clipOn(Disk& disk) { return disk.files[disk.names[clip]]; }

constexpr const char* otherFile =
    ".clip.mxf.corvid-recovery is not of clip.mxf as it is, so nothing was changed: the file has "
    "been replaced or changed since";

INSTANTIATE_TEST_SUITE_P(
    , RefusesRecovery,
    ::testing::Values(
        Refused{"AnEmptyJournal", [](Disk& disk) { journalOn(disk).clear(); },
                "the recovery file is none of Corvid"},
        Refused{"ACutJournal", [](Disk& disk) { journalOn(disk).pop_back(); },
                "the recovery file ends too early"},
        Refused{"AJournalWithAnotherByte", [](Disk& disk) { journalOn(disk)[60] ^= 1; },
                "the recovery file is damaged: its hash is not that of its content"},
        Refused{"AnotherFile",
                [](Disk& disk) {
                    disk.files[9] = clipOn(disk);
                    disk.names[clip] = 9;
                },
                otherFile},
        Refused{"AShorterFile", [](Disk& disk) { clipOn(disk).pop_back(); }, otherFile},
        Refused{"ALongerFile", [](Disk& disk) { clipOn(disk).push_back(0); }, otherFile},
        Refused{"OtherBytes", [](Disk& disk) { clipOn(disk)[50] ^= 1; }, otherFile}),
    Testing::nameOfCase<Refused>);

TEST(Recovery, ofARealFile) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "clip.mxf").string();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(oldBytes.data()), 300);
    SystemFiles files;
    const Rewrite rewrite = rewriteOf({{100, Bytes(5, 0xAA)}, {290, Bytes(60, 0xBB)}});
    for (const RecoveryGoal goal : {RecoveryGoal::before, RecoveryGoal::after}) {
        {
            const OpenFile file(files, path, FileSystem::Access::write);
            const Bytes journal = Journal::of(file, rewrite).coded();
            const OpenFile there(files, Journal::pathFor(path), FileSystem::Access::create);
            files.writeAt(there.number(), 0, viewOf(journal));
            files.writeAt(file.number(), 100, viewOf(Bytes(3, 0xAA)));
        }
        EXPECT_TRUE(needsRecovery(files, path));
        EXPECT_TRUE(recover(files, path, goal));
        std::ifstream stream(path, std::ios::binary);
        EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(stream), {}),
                  goal == RecoveryGoal::before ? oldBytes : after(oldBytes, rewrite));
        EXPECT_FALSE(recover(files, path, goal));
    }
}

} // namespace
} // namespace Corvid::mxf
