#include "host/mxf/rewrite/disk/InPlace.h"

#include "host/mxf/rewrite/disk/Journal.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tests/mxf/ReadBack.h"
#include "tests/mxf/rewrite/disk/ModelFiles.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <set>

namespace Corvid::mxf {
namespace {

using Testing::Crash;
using Testing::Disk;
using Testing::messageOf;
using Testing::ModelFiles;
using Testing::pattern;

const std::string clip = "clip.mxf";
const std::string journalName = ".clip.mxf.corvid-recovery";

const Bytes oldBytes = pattern(300);

Disk diskWithClip() {
    Disk disk;
    disk.names[clip] = 1;
    disk.files[1] = oldBytes;
    return disk;
}

Bytes after(Bytes bytes, const Rewrite& rewrite) {
    for (const Insertion& insertion : rewrite.insertions) {
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(insertion.offset), insertion.size,
                     Types::u8{0});
    }
    bytes.resize(rewrite.newSize());
    for (const ByteRange& range : rewrite.writes) {
        std::copy(range.bytes.begin(), range.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return bytes;
}

struct Case {
    const char* name;
    Rewrite rewrite;
    std::set<std::uint64_t> holes = {}; ///< numbers of blocks
    /// The number of a sync that this case can do without: where no data moves, the blocks may come
    /// later than what is written.
    std::size_t needlessSync = 0;
    std::string recoveryFolder = {};

    /// The calls that remove the recovery file, and the pointer to it if there is one.
    std::size_t lastCalls() const { return recoveryFolder.empty() ? 2 : 4; }
    std::string journal() const {
        return recoveryFolder.empty() ? journalName
                                      : recoveryFolder + "/.clip.mxf-1.corvid-recovery";
    }
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

Disk diskOf(const Case& c) {
    Disk disk = diskWithClip();
    disk.files[1].resize(c.rewrite.oldSize);
    disk.holes[1] = c.holes;
    for (const std::uint64_t block : c.holes) {
        std::fill_n(disk.files[1].begin() +
                        static_cast<std::ptrdiff_t>(block * ModelFiles::blockSize),
                    ModelFiles::blockSize, Types::u8{0});
    }
    return disk;
}

Bytes oldOf(const Case& c) { return diskOf(c).content(clip); }
Bytes wantedOf(const Case& c) { return after(oldOf(c), c.rewrite); }

Rewrite rewriteOf(ByteRanges writes) { return {oldBytes.size(), {}, std::move(writes)}; }

/// Changes the clip, and dies on the way if the model says so.
/// @return whether it died.
bool change(ModelFiles& files, const Rewrite& rewrite, const std::string& recoveryFolder = {}) {
    try {
        rewriteInPlace(files, clip, rewrite, *files.find(clip), recoveryFolder);
    } catch (const Crash&) {
        return true;
    }
    return false;
}

/// Whether every disk that a dead machine can leave is old or new, or becomes so by recovery.
/// @param finished  the change was reported as done.
bool isSafe(const ModelFiles& files, const Bytes& old, const Bytes& wanted, bool finished,
            unsigned depth) {
    std::size_t number = 0;
    for (const Disk& image : files.images(depth == 0 ? 5 : 30)) {
        if (image.names.count(clip) == 0) {
            return false;
        }
        for (const RecoveryGoal goal : {RecoveryGoal::before, RecoveryGoal::after}) {
            ModelFiles again(image);
            if (!needsRecovery(again, clip)) {
                const Bytes& content = image.content(clip);
                if (content != wanted && (finished || content != old)) {
                    return false;
                }
                continue;
            }
            const Bytes& expected = goal == RecoveryGoal::before ? old : wanted;
            try {
                recover(again, clip, goal);
            } catch (const Exceptions::BaseException&) {
                return false;
            }
            if (again.now().content(clip) != expected || needsRecovery(again, clip)) {
                return false;
            }
            // The machine may die again, while it recovers; some images are enough for that.
            const bool isChosen = depth != 0 && ++number % 8 == 1;
            for (std::size_t dieAt = 1; isChosen; ++dieAt) {
                ModelFiles dying(image);
                dying.dieAt = dieAt;
                try {
                    recover(dying, clip, goal);
                    break;
                } catch (const Crash&) {
                    if (!isSafe(dying, old, wanted, false, depth - 1)) {
                        return false;
                    }
                }
            }
        }
    }
    return true;
}

class RewriteInPlace : public ::testing::TestWithParam<Case> {};

TEST_P(RewriteInPlace, changesTheFileAndLeavesNothingElse) {
    ModelFiles files(diskOf(GetParam()));
    EXPECT_FALSE(change(files, GetParam().rewrite, GetParam().recoveryFolder));
    EXPECT_EQ(files.now().content(clip), wantedOf(GetParam()));
    EXPECT_EQ(files.now().names.size(), 1U);
    EXPECT_FALSE(recover(files, clip, RecoveryGoal::before));
}

TEST_P(RewriteInPlace, leavesOldOrNewWhereverTheMachineDies) {
    const Bytes old = oldOf(GetParam());
    const Bytes wanted = wantedOf(GetParam());
    std::size_t deaths = 0;
    for (std::size_t dieAt = 1;; ++dieAt) {
        ModelFiles files(diskOf(GetParam()));
        files.dieAt = dieAt;
        const bool died = change(files, GetParam().rewrite, GetParam().recoveryFolder);
        EXPECT_TRUE(isSafe(files, old, wanted, !died, 1)) << "in call " << dieAt;
        if (!died) {
            break;
        }
        ++deaths;
    }
    EXPECT_GE(deaths, 9U);
}

TEST_P(RewriteInPlace, needsEachOfItsSyncs) {
    const Bytes old = oldOf(GetParam());
    const Bytes wanted = wantedOf(GetParam());
    ModelFiles whole(diskOf(GetParam()));
    change(whole, GetParam().rewrite, GetParam().recoveryFolder);
    ASSERT_EQ(whole.syncs, (GetParam().rewrite.insertions.empty() ? 4U : 6U) +
                               (GetParam().recoveryFolder.empty() ? 0U : 3U));
    for (std::size_t liar = 1; liar != whole.syncs; ++liar) {
        bool safe = true;
        for (std::size_t dieAt = 1; safe; ++dieAt) {
            ModelFiles files(diskOf(GetParam()));
            files.dieAt = dieAt;
            files.syncThatLies = liar;
            const bool died = change(files, GetParam().rewrite, GetParam().recoveryFolder);
            safe = isSafe(files, old, wanted, !died, 0);
            if (!died) {
                break;
            }
        }
        EXPECT_EQ(safe, liar == GetParam().needlessSync) << "sync " << liar;
    }
    // Without the last, the clip is safe, but a recovery file may come back after success.
    ModelFiles files(diskOf(GetParam()));
    files.syncThatLies = whole.syncs;
    change(files, GetParam().rewrite, GetParam().recoveryFolder);
    bool comesBack = false;
    for (const Disk& image : files.images()) {
        comesBack = comesBack || image.names.count(GetParam().journal()) != 0;
    }
    EXPECT_TRUE(comesBack);
}

TEST_P(RewriteInPlace, bringsTheFileBackWhereACallFails) {
    ModelFiles whole(diskOf(GetParam()));
    change(whole, GetParam().rewrite, GetParam().recoveryFolder);
    for (std::size_t failAt = 1; failAt <= whole.calls; ++failAt) {
        ModelFiles files(diskOf(GetParam()));
        files.failAt = failAt;
        EXPECT_EQ(messageOf([&] { change(files, GetParam().rewrite, GetParam().recoveryFolder); }),
                  "no space left");
        const std::size_t left = whole.calls - failAt;     // calls
        const bool isDone = left < GetParam().lastCalls(); // the journal could not go
        EXPECT_TRUE(files.now().content(clip) ==
                    (isDone ? wantedOf(GetParam()) : oldOf(GetParam())))
            << failAt;
        const std::size_t couldNotGo = !isDone || left == 0 ? 0 : left == 3 ? 2 : 1;
        EXPECT_EQ(files.now().names.size(), 1 + couldNotGo) << failAt;
    }
}

TEST_P(RewriteInPlace, bringsTheFileBackWhereTheDiskIsFull) {
    ModelFiles whole(diskOf(GetParam()));
    change(whole, GetParam().rewrite, GetParam().recoveryFolder);
    for (std::size_t fullAt = 1; fullAt <= whole.calls; ++fullAt) {
        ModelFiles files(diskOf(GetParam()));
        files.fullAt = fullAt;
        const std::string message =
            messageOf([&] { change(files, GetParam().rewrite, GetParam().recoveryFolder); });
        EXPECT_THAT(message, ::testing::AnyOf("", "no space left")) << fullAt;
        EXPECT_TRUE(files.now().content(clip) ==
                    (message.empty() ? wantedOf(GetParam()) : oldOf(GetParam())))
            << fullAt;
        EXPECT_EQ(files.now().names.size(), 1U) << fullAt;
    }
}

TEST_P(RewriteInPlace, isUndoneByRecoveryWhereTheDiskIsFull) {
    ModelFiles whole(diskOf(GetParam()));
    change(whole, GetParam().rewrite, GetParam().recoveryFolder);
    for (std::size_t dieAt = 1; dieAt <= whole.calls; ++dieAt) {
        ModelFiles files(diskOf(GetParam()));
        files.dieAt = dieAt;
        change(files, GetParam().rewrite, GetParam().recoveryFolder);
        ModelFiles again(files.now());
        again.fullAt = 1;
        if (needsRecovery(again, clip)) {
            recover(again, clip, RecoveryGoal::before);
            EXPECT_TRUE(again.now().content(clip) == oldOf(GetParam())) << dieAt;
        }
    }
}

TEST_P(RewriteInPlace, saysHowToGoOnWhereTheFileCannotBeBroughtBack) {
    ModelFiles whole(diskOf(GetParam()));
    change(whole, GetParam().rewrite, GetParam().recoveryFolder);
    ModelFiles files(diskOf(GetParam()));
    files.failAt = whole.calls - GetParam().lastCalls(); // the last sync of the file
    files.failsOn = true;
    EXPECT_EQ(messageOf([&] { change(files, GetParam().rewrite, GetParam().recoveryFolder); }),
              "no space left; clip.mxf is changed in part, run corvid recover");
    files.failAt = 0;
    EXPECT_TRUE(needsRecovery(files, clip));
    EXPECT_EQ(messageOf([&] { change(files, GetParam().rewrite, GetParam().recoveryFolder); }),
              "an earlier change of clip.mxf was not finished; run corvid recover first");
    EXPECT_TRUE(recover(files, clip, RecoveryGoal::after));
    EXPECT_EQ(files.now().content(clip), wantedOf(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    , RewriteInPlace,
    ::testing::Values(
        Case{"OneRange", rewriteOf({{100, Bytes(5, 0xAA)}, {200, Bytes(1, 0xBB)}})},
        Case{"RangesOfManySectors", rewriteOf({{3, Bytes(70, 0xAA)}, {250, Bytes(50, 0xBB)}})},
        Case{"WithTheRecoveryFileElsewhere",
             rewriteOf({{100, Bytes(5, 0xAA)}, {200, Bytes(1, 0xBB)}}),
             {},
             0,
             "elsewhere"},
        Case{"AnInsertionWithTheRecoveryFileElsewhere",
             {300, {{64, 64}}, {{3, Bytes(2, 0xAA)}, {64, Bytes(80, 0xBB)}, {350, Bytes(5, 0xCC)}}},
             {},
             0,
             "elsewhere"},
        Case{"PastTheEnd", rewriteOf({{10, Bytes(2, 0xAA)}, {290, Bytes(60, 0xBB)}})},
        Case{
            "AnInsertion",
            {300, {{64, 64}}, {{3, Bytes(2, 0xAA)}, {64, Bytes(80, 0xBB)}, {350, Bytes(5, 0xCC)}}}},
        Case{"AnInsertionOfWhichAPartIsWritten",
             {300, {{96, 96}}, {{100, Bytes(20, 0xBB)}, {130, Bytes(40, 0xCC)}}}},
        Case{"AnInsertionAtTheFront", {300, {{0, 32}}, {{0, Bytes(70, 0xBB)}}}},
        Case{"AnInsertionAtTheLastBlock", {300, {{288, 32}}, {{280, Bytes(45, 0xBB)}}}},
        Case{"AnInsertionAndALongerEnd",
             {300, {{64, 64}}, {{70, Bytes(60, 0xBB)}, {340, Bytes(60, 0xCC)}}}},
        Case{"AnInsertionBeforeHoles",
             {300, {{64, 64}}, {{64, Bytes(64, 0xBB)}, {200, Bytes(5, 0xCC)}}},
             {3, 4, 6}},
        Case{"AnInsertionInAHole",
             {300, {{64, 64}}, {{60, Bytes(90, 0xBB)}, {200, Bytes(5, 0xCC)}}},
             {1, 2, 5, 6, 7}},
        Case{"AnInsertionAfterWhichOnlyAHoleFollows",
             {256, {{128, 64}}, {{130, Bytes(9, 0xBB)}}},
             {4, 5, 6, 7},
             3}),
    Testing::nameOfCase<Case>);

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

TEST(Journal, isReadAsItWasWritten) {
    ModelFiles files(diskWithClip());
    const OpenFile file(files, clip, FileSystem::Access::read);
    const Journal journal = Journal::of(file, rewriteOf({{10, Bytes(5, 1)}, {298, Bytes(9, 2)}}));
    const Bytes coded = journal.coded();
    const Journal read = Journal::parse(coded);
    EXPECT_EQ(read.coded(), coded);
    EXPECT_EQ(read.newSize, 307U);
    EXPECT_EQ(read.before.back().bytes, (Bytes{oldBytes[298], oldBytes[299]}));
    for (std::size_t size = 0; size != coded.size(); ++size) {
        const Bytes cut(coded.begin(), coded.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(messageOf([&] { Journal::parse(cut); }), "");
    }
}

TEST(Journal, isReadWithItsLastWholePhase) {
    ModelFiles files(diskWithClip());
    const OpenFile file(files, clip, FileSystem::Access::read);
    Journal journal = Journal::of(file, {300, {{64, 64}}, {{3, Bytes(2, 1)}, {64, Bytes(80, 2)}}});
    Bytes coded = journal.coded();
    for (const auto next : {Journal::Phase::writing, Journal::Phase::removing}) {
        const auto before = Journal::parse(coded).phase;
        journal.phase = next;
        journal.data.push_back({1000, 2000});
        const ByteRange phase = journal.codedPhase();
        ASSERT_LE(phase.end(), coded.size());
        for (std::size_t i = 0; i != phase.bytes.size(); ++i) {
            EXPECT_EQ(Journal::parse(coded).phase, before) << "only " << i << " bytes are there";
            coded[static_cast<std::size_t>(phase.offset) + i] = phase.bytes[i];
        }
        EXPECT_EQ(Journal::parse(coded).phase, next);
        EXPECT_EQ(Journal::parse(coded).data, journal.data);
    }
}

TEST(Journal, isHiddenBesideItsFile) {
    EXPECT_EQ(Journal::pathFor("/a/b.mxf"), "/a/.b.mxf.corvid-recovery");
    EXPECT_EQ(Journal::pathFor("b.mxf"), ".b.mxf.corvid-recovery");
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

/// A real file of several blocks, the last one not whole, and an insertion into it.
class RealBlocks : public ::testing::Test {
protected:
    void SetUp() override {
        path_ = (folder_.path() / "clip.mxf").string();
        const OpenFile file(files_, path_, FileSystem::Access::create);
        block_ = files_.insertionBlock(file.number());
        if (block_ == 0) {
            GTEST_SKIP() << "the file system of temporary files inserts no blocks";
        }
        old_ = pattern(static_cast<std::size_t>(10 * block_ + 100));
        files_.writeAt(file.number(), 0, viewOf(old_));
        file.sync();
        rewrite_ = {old_.size(),
                    {{2 * block_, 3 * block_}},
                    {{block_, Bytes(static_cast<std::size_t>(2 * block_), 0xAA)},
                     {9 * block_, Bytes(50, 0xBB)}}};
        wanted_ = after(old_, rewrite_);
    }

    Bytes content() {
        const OpenFile file(files_, path_, FileSystem::Access::read);
        return file.read(0, file.status().size);
    }

    /// Leaves the file as a machine does that dies with the hole at a block.
    void die(std::uint64_t holeAt, bool isWritten = false) {
        const OpenFile file(files_, path_, FileSystem::Access::write);
        Journal journal = Journal::of(file, rewrite_);
        if (isWritten) {
            journal.phase = Journal::Phase::writing;
        }
        const OpenFile there(files_, Journal::pathFor(path_), FileSystem::Access::create);
        files_.writeAt(there.number(), 0, viewOf(journal.coded()));
        ASSERT_TRUE(files_.insert(file.number(), holeAt * block_, 3 * block_));
        if (isWritten) {
            files_.writeAt(file.number(), 2 * block_, viewOf(Bytes(100, 0xAA)));
        }
    }

    Testing::TemporaryDir folder_;
    SystemFiles files_;
    std::string path_;
    std::uint64_t block_ = 0;
    Bytes old_;
    Rewrite rewrite_;
    Bytes wanted_;
};

TEST_F(RealBlocks, areInserted) {
    EXPECT_FALSE(rewriteInPlace(files_, path_, rewrite_, *files_.find(path_)));
    EXPECT_TRUE(content() == wanted_);
    EXPECT_FALSE(needsRecovery(files_, path_));
}

TEST_F(RealBlocks, areTakenOutAgainWhereverTheyHaveCome) {
    for (std::uint64_t holeAt = 2; holeAt != 11; ++holeAt) {
        die(holeAt);
        EXPECT_TRUE(recover(files_, path_, RecoveryGoal::before)) << holeAt;
        EXPECT_TRUE(content() == old_) << holeAt;
    }
    die(2, true);
    EXPECT_TRUE(recover(files_, path_, RecoveryGoal::before));
    EXPECT_TRUE(content() == old_);
}

TEST_F(RealBlocks, areInsertedByRecovery) {
    die(7);
    EXPECT_TRUE(recover(files_, path_, RecoveryGoal::after));
    EXPECT_TRUE(content() == wanted_);
}

TEST_F(RealBlocks, areNotConfusedWithHolesThatWereThere) {
    {
        const OpenFile file(files_, path_, FileSystem::Access::write);
        files_.clear(file.number(), 3 * block_, 2 * block_);
        files_.clear(file.number(), 7 * block_, block_);
        file.sync();
    }
    old_ = content();
    for (std::uint64_t holeAt = 2; holeAt != 11; ++holeAt) {
        die(holeAt);
        EXPECT_TRUE(recover(files_, path_, RecoveryGoal::before)) << holeAt;
        EXPECT_TRUE(content() == old_) << holeAt;
    }
}

TEST_F(RealBlocks, areLeftAloneWhereOthersHaveMoved) {
    die(2);
    {
        const OpenFile file(files_, path_, FileSystem::Access::write);
        files_.clear(file.number(), 8 * block_, block_);
    }
    const Bytes before = content();
    EXPECT_EQ(messageOf([&] { recover(files_, path_, RecoveryGoal::before); }),
              "the blocks of the file are not where the recovery file says, so nothing was "
              "changed");
    EXPECT_TRUE(content() == before);
    EXPECT_TRUE(needsRecovery(files_, path_));
}

TEST(InPlace, recoversARealFile) {
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

TEST(SystemFiles, lockAFileUntilItIsClosed) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "clip.mxf").string();
    SystemFiles files;
    const OpenFile file(files, path, FileSystem::Access::create);
    {
        const OpenFile first(files, path, FileSystem::Access::write);
        first.lock();
        // Closing another one does not end the lock.
        OpenFile(files, path, FileSystem::Access::write);
        EXPECT_EQ(messageOf([&] { file.lock(); }),
                  "another program has locked " + path +
                      ", perhaps to change it too; nothing was written");
    }
    EXPECT_EQ(messageOf([&] { file.lock(); }), "");
    EXPECT_FALSE(files.lacksLocks());
}

TEST(SystemFiles, makeNoFileWhereOneIsAlready) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "other").string();
    std::ofstream(path) << "text";
    SystemFiles files;
    for (const auto access : {FileSystem::Access::create, FileSystem::Access::share}) {
        EXPECT_NE(messageOf([&] { OpenFile(files, path, access); }), "");
    }
    EXPECT_EQ(std::filesystem::file_size(path), 4U);
}

TEST(SystemFiles, findNoFileWithANameThatIsTooLong) {
    SystemFiles files;
    EXPECT_FALSE(files.find("/tmp/" + std::string(300, 'x')));
}

TEST(SystemFiles, sayWhatFails) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "none.mxf").string();
    SystemFiles files;
    EXPECT_EQ(messageOf([&] { files.resolve(path); }),
              "can't open " + path + ": No such file or directory");
    EXPECT_EQ(messageOf([&] { files.open(path, FileSystem::Access::read); }),
              "can't open " + path + ": No such file or directory");
    EXPECT_EQ(messageOf([&] { files.remove(path); }),
              "can't remove " + path + ": No such file or directory");
    EXPECT_FALSE(files.find(path));
    std::ofstream(path) << "x";
    std::ofstream(path + "2") << "y";
    EXPECT_EQ(messageOf([&] { files.renameToNew(path, path + "2"); }),
              "can't rename " + path + " to " + path + "2: File exists");
}

} // namespace
} // namespace Corvid::mxf
