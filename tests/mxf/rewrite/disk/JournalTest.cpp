#include "host/mxf/rewrite/disk/Journal.h"

#include "tests/mxf/ReadBack.h"
#include "tests/mxf/rewrite/disk/ClipOnDisk.h"

namespace Corvid::mxf {
namespace {

using Testing::clip;
using Testing::diskWithClip;
using Testing::messageOf;
using Testing::ModelFiles;
using Testing::oldBytes;
using Testing::rewriteOf;

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

} // namespace
} // namespace Corvid::mxf
