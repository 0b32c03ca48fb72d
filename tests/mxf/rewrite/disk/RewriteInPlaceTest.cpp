#include "tests/mxf/ReadBack.h"
#include "tests/mxf/rewrite/disk/ClipOnDisk.h"

#include <gmock/gmock.h>
#include <set>

namespace Corvid::mxf {
namespace {

using Testing::after;
using Testing::change;
using Testing::clip;
using Testing::Crash;
using Testing::Disk;
using Testing::diskWithClip;
using Testing::journalName;
using Testing::messageOf;
using Testing::ModelFiles;
using Testing::rewriteOf;

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

} // namespace
} // namespace Corvid::mxf
