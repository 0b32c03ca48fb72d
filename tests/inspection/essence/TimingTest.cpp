#include "tests/inspection/essence/EssenceClip.h"

#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using Inspection::timecodeText;

constexpr unsigned char tapeDescriptor = 0x2E;
constexpr unsigned char cdciDescriptor = 0x28;
constexpr EssenceClip::Rate film{24000, 1001};
constexpr EssenceClip::Rate samples{48000, 1};
constexpr EssenceClip::Rate pal{25, 1};

TEST(Timing, beginsAtTheTimecodeOfTheMaterialPackage) {
    EssenceClip clip;
    clip.package(materialPackageSet, umid(1),
                 {clip.timecode(pal, 90000, 25, false), clip.clip(1, pal, pictureTrack, 30)});
    const auto timing = clip.essence().timing;
    ASSERT_TRUE(timing.start);
    EXPECT_EQ(timecodeText(timing.start->timecode), "01:00:00:00");
    EXPECT_EQ(timing.start->source, "material package");
    EXPECT_EQ(timing.clip.units, 30);
    EXPECT_EQ(timing.frames, 30);
    EXPECT_FALSE(timing.essence);
}

/// Sound in samples, of a tape in frames.
TEST(Timing, followsSourceClipsToATapeAndConvertsTheirPositions) {
    EssenceClip clip;
    const unsigned tape = clip.add(tapeDescriptor, {});
    const unsigned file = clip.add(cdciDescriptor, {});
    clip.package(materialPackageSet, umid(1),
                 {clip.clip(2, samples, soundTrack, 9600, umid(2), 1)});
    clip.package(sourcePackageSet, umid(2),
                 {clip.clip(1, samples, soundTrack, 9600, umid(3), 2, 1760280960)},
                 {{Item::descriptor.item, uuid(file)}});
    clip.package(sourcePackageSet, umid(3),
                 {clip.clip(2, pal, soundTrack, 10800000), clip.timecode(pal, 0, 25, false)},
                 {{Item::descriptor.item, uuid(tape)}, {Item::packageName.item, utf16(u"A12")}});
    const auto essence = clip.essence();
    ASSERT_TRUE(essence.timing.start);
    EXPECT_EQ(timecodeText(essence.timing.start->timecode), "10:11:12:13");
    EXPECT_EQ(essence.timing.start->source, "tape \"A12\"");
    EXPECT_EQ(essence.timing.frames, 5);
    EXPECT_EQ(essence.sources, std::vector<std::string>{"tape \"A12\""});
}

TEST(Timing, showsDropFrameAsSuch) {
    EssenceClip clip;
    clip.package(materialPackageSet, umid(1),
                 {clip.timecode({30000, 1001}, 1800, 30, true),
                  clip.clip(1, {30000, 1001}, pictureTrack, 17982)});
    const auto timing = clip.essence().timing;
    EXPECT_EQ(timecodeText(timing.start->timecode), "00:01:00;02");
    EXPECT_EQ(timing.frames, 17982);
}

/// 24 frames a second may be 23.976: neither is guessed.
TEST(Timing, countsNoFramesOfARateThatIsNotCertain) {
    EssenceClip clip;
    clip.package(materialPackageSet, umid(1),
                 {clip.timecode(samples, 0, 24, false), clip.clip(1, samples, soundTrack, 9600)});
    const auto timing = clip.essence().timing;
    ASSERT_TRUE(timing.start);
    EXPECT_FALSE(timing.frames);
    EXPECT_EQ(timing.clip.units, 9600);
}

TEST(Timing, hasTheLengthOfTheEssenceWhereItDiffers) {
    EssenceClip clip;
    const unsigned file = clip.add(cdciDescriptor, {{Item::essenceLength.item, number(100, 8)}});
    clip.package(materialPackageSet, umid(1), {clip.clip(1, film, pictureTrack, 30, umid(2), 1)});
    clip.package(sourcePackageSet, umid(2), {clip.clip(1, film, pictureTrack, 50)},
                 {{Item::descriptor.item, uuid(file)}});
    const auto timing = clip.essence().timing;
    EXPECT_EQ(timing.clip.units, 30);
    ASSERT_TRUE(timing.essence);
    EXPECT_EQ(timing.essence->units, 100);
}

TEST(Timing, takesMinusOneForNotStated) {
    EssenceClip clip;
    clip.package(materialPackageSet, umid(1), {clip.clip(1, pal, pictureTrack, ~std::uint64_t{0})});
    EXPECT_FALSE(clip.essence().timing.clip.units);
}

TEST(Timing, endsWhereSourceClipsGoInCircles) {
    EssenceClip clip;
    const unsigned file = clip.add(cdciDescriptor, {});
    clip.package(materialPackageSet, umid(1), {clip.clip(1, pal, pictureTrack, 9, umid(2), 1)});
    clip.package(sourcePackageSet, umid(2), {clip.clip(1, pal, pictureTrack, 9, umid(2), 1, 7)},
                 {{Item::descriptor.item, uuid(file)}});
    EXPECT_FALSE(clip.essence().timing.start);
}

TEST(Timing, doesNotOverflow) {
    EssenceClip clip;
    const std::uint64_t far = 0x7FFFFFFFFFFFFFFF;
    const unsigned tape = clip.add(tapeDescriptor, {});
    clip.package(materialPackageSet, umid(1),
                 {clip.clip(1, pal, pictureTrack, far, umid(2), 1, far)});
    clip.package(sourcePackageSet, umid(2),
                 {clip.clip(1, pal, pictureTrack, far), clip.timecode(pal, far, 25, false)},
                 {{Item::descriptor.item, uuid(tape)}});
    EXPECT_FALSE(clip.essence().timing.start);
}

} // namespace
} // namespace Corvid::Testing
