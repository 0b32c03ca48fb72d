#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/Journal.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tests/mxf/ReadBack.h"
#include "tests/mxf/rewrite/disk/ClipOnDisk.h"
#include "tests/support/Paths.h"

namespace Corvid::mxf {
namespace {

using Testing::after;
using Testing::clip;
using Testing::messageOf;
using Testing::pattern;

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

} // namespace
} // namespace Corvid::mxf
