#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;

namespace {

/// The calls that change files, with those that another C library makes instead.
const char* const changingCalls[] = {
    "pwrite64",        "ftruncate", "fsync",           "rename,renameat,renameat2",
    "unlink,unlinkat", "fallocate", "copy_file_range", "linkat"};

/// A way in which an edit reaches the disk.
struct Way {
    const char* name;
    std::size_t title;  ///< characters of the new title
    const char* inject; ///< for strace, beside what interrupts the edit
    const char* says;   ///< what the edit says when it is done
};
void PrintTo(const Way& way, std::ostream* out) { *out << way.name; }

/// An edit of a clip with a copy of the metadata in its header and its footer, which is interrupted
/// in one of its calls.
class Interrupted : public ::testing::TestWithParam<Way> {
protected:
    void SetUp() override {
        if (shop.run("strace -V").status != 0) {
            GTEST_SKIP() << "no strace";
        }
        if (shop.run("strace -qq -o /dev/null true").status != 0) {
            GTEST_SKIP() << "no program can be traced here";
        }
        const Bytes metadata =
            join({standardPrimer(),
                  set(structuralKey(prefaceSet), 1,
                      {property(0x3B03, uuid(2)), property(0x3B06, batch({uuid(3)}, 16))}),
                  set(structuralKey(contentStorageSet), 2),
                  set(structuralKey(identificationSet), 3, {property(0x3C01, utf16(u"Old"))}),
                  fill(600)});
        PartitionSpec header = headerPartition(metadata);
        header.behindMetadata = klv(essenceKey(), repeat(0xEE, 50000));
        shop.write(
            "old.mxf",
            MxfBuilder().add(header).add(footerPartition(metadata)).withRandomIndexPack().build());
        old = shop.read("old.mxf");
        const Outcome whole = edit("");
        const std::string says = whole.out.substr(0, whole.out.find(':'));
        if (says != GetParam().says && GetParam().title > 600) {
            GTEST_SKIP() << "the file system inserts no blocks: what follows is moved, or the clip "
                            "copied";
        }
        ASSERT_EQ(says, GetParam().says) << whole.err;
        wanted = shop.read("clip.mxf");
        ASSERT_NE(wanted, old);
    }

    /// Edits the clip anew.
    /// @param interruption  for strace.
    Outcome edit(const std::string& interruption) const {
        shop.run("rm -f clip.mxf .clip.mxf.* && cp old.mxf clip.mxf");
        return shop.run("strace -qq -o calls" + interruption + GetParam().inject +
                        " corvid set clip.mxf --no-identification "
                        "Identification/ApplicationSupplierName=" +
                        std::string(GetParam().title, 'n'));
    }

    /// Edits the clip again and again, interrupted in each call of a kind that it makes.
    /// @param how  what happens in the call.
    template <class Check>
    void inEach(const std::string& calls, const std::string& how, Check check) const {
        std::string options = " -e trace=";
        options.append(calls).append(" -e inject=").append(calls).append(":").append(how);
        options += ":when=";
        for (std::size_t number = 1;; ++number) {
            const Outcome outcome = edit(options + std::to_string(number));
            if (outcome.status == 0) {
                EXPECT_TRUE(clip() == wanted) << outcome.err;
                return;
            }
            check(outcome, calls + " " + std::to_string(number));
        }
    }

    std::string clip() const { return shop.read("clip.mxf"); }
    bool isUnfinished() const { return shop.has(".clip.mxf.corvid-recovery"); }

    Workshop shop;
    std::string old;
    std::string wanted;
};

TEST_P(Interrupted, leavesOldOrNewWhereverItIsKilled) {
    std::size_t deaths = 0;
    const auto check = [&](const Outcome&, const std::string& where) {
        const bool completes = ++deaths % 2 == 0;
        if (!isUnfinished()) {
            EXPECT_TRUE(clip() == old || clip() == wanted) << where;
            return;
        }
        EXPECT_THAT(shop.run("corvid check clip.mxf").err,
                    ::testing::HasSubstr("[unfinished-edit]"))
            << where;
        const Outcome recovered =
            shop.run(std::string("corvid recover clip.mxf") + (completes ? " --complete" : ""));
        EXPECT_EQ(recovered.status, 0) << where << recovered.err;
        EXPECT_TRUE(clip() == (completes ? wanted : old)) << where;
        EXPECT_FALSE(isUnfinished()) << where;
    };
    for (const char* const calls : changingCalls) {
        inEach(calls, "signal=KILL", check);
    }
    EXPECT_GE(deaths, 8U);
}

TEST_P(Interrupted, leavesTheOldClipWhereverTheDiskIsFull) {
    std::size_t failures = 0;
    const auto check = [&](const Outcome& outcome, const std::string& where) {
        ++failures;
        EXPECT_EQ(outcome.status, 3) << where;
        EXPECT_THAT(outcome.err, ::testing::HasSubstr("No space left on device")) << where;
        EXPECT_TRUE(clip() == old) << where;
        EXPECT_EQ(shop.run("ls -A | grep -c '^[.]clip'").out, "0\n") << where;
    };
    for (const char* const calls : {"pwrite64", "ftruncate", "fallocate", "copy_file_range"}) {
        inEach(calls, "error=ENOSPC", check);
    }
    EXPECT_GE(failures, 2U);
}

INSTANTIATE_TEST_SUITE_P(, Interrupted,
                         ::testing::Values(Way{"InPlace", 40, "", "in place"},
                                           Way{"WithBlocksInserted", 3000, "", "in place"},
                                           Way{"WithACopyInItsPlace", 3000,
                                               " -e inject=fallocate:error=EOPNOTSUPP",
                                               "by a longer file in its place"}),
                         [](const auto& each) { return each.param.name; });

} // namespace
