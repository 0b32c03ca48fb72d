#include "tests/inspection/essence/EssenceClip.h"

#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

using Inspection::Stream;
using ::testing::ElementsAre;

constexpr unsigned char cdci = 0x28;
constexpr unsigned char sound = 0x42;
constexpr unsigned char wavePcm = 0x48;
constexpr unsigned char multiple = 0x44;
constexpr unsigned char immersive = 0x7B;
constexpr unsigned char networkLocator = 0x32;
constexpr unsigned char essenceData = 0x23;
constexpr unsigned char channelLabel = 0x6B;
constexpr unsigned char groupLabel = 0x6C;

Bytes label(std::uint64_t back) { return join({hex("060e2b34 04010101"), number(back, 8)}); }

struct CodecCase {
    const char* name;
    unsigned char set;
    Properties properties;
    const char* codec;
};

class Codec : public ::testing::TestWithParam<CodecCase> {};

TEST_P(Codec, isNamed) {
    const auto essence = essenceOf(GetParam().set, GetParam().properties);
    ASSERT_EQ(essence.streams.size(), 1U);
    EXPECT_EQ(essence.streams.front().codec, GetParam().codec);
}

INSTANTIATE_TEST_SUITE_P(
    , Codec,
    ::testing::Values(
        CodecCase{"ByPictureCompression",
                  cdci,
                  {{Item::pictureCompression.item, label(0x0401020201323102)},
                   {Item::containerFormat.item, label(0x0d010301020c0600)}},
                  "AVC-Intra 100"},
        CodecCase{"BySoundCompression",
                  sound,
                  {{Item::soundCompression.item, label(0x0402020203021c00)}},
                  "Dolby E"},
        CodecCase{
            "ByContainer", cdci, {{Item::containerFormat.item, label(0x0d01030102110100)}}, "VC-3"},
        CodecCase{"NotByALabelOfZeros",
                  wavePcm,
                  {{Item::soundCompression.item, Bytes(16)},
                   {Item::containerFormat.item, label(0x0d01030102060100)}},
                  "PCM"},
        CodecCase{"ByADescriptorOfNothingElse",
                  wavePcm,
                  {{Item::containerFormat.item, hex("060e2b34 010101ff 4b464141 000d4d4f")}},
                  "PCM"},
        CodecCase{"NotByAContainerOfNobodysRegister",
                  cdci,
                  {{Item::containerFormat.item, hex("060e2b34 010101ff 4b464141 000d4d4f")}},
                  ""},
        CodecCase{"NotStated", cdci, {}, ""}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(Streams, areThePartsOfADescriptorOfSeveralWithTheirTracks) {
    EssenceClip clip;
    const unsigned picture = clip.add(cdci, {{Item::linkedTrackId.item, number(1, 4)}});
    const unsigned pcm = clip.add(wavePcm, {{Item::linkedTrackId.item, number(2, 4)},
                                            {Item::essenceLength.item, number(48, 8)}});
    const unsigned both =
        clip.add(multiple, {{Item::fileDescriptors.item, ClipBuilder::references({picture, pcm})}});
    const EssenceClip::Rate rate;
    clip.package(sourcePackageSet, umid(2),
                 {clip.clip(1, rate, pictureTrack, 10), clip.clip(2, rate, soundTrack, 10),
                  clip.clip(3, rate, soundTrack, 10)},
                 {{Item::descriptor.item, uuid(both)}});
    const auto streams = clip.essence().streams;
    ASSERT_EQ(streams.size(), 3U);
    EXPECT_EQ(streams[0].kind, Stream::Kind::picture);
    EXPECT_EQ(streams[0].track, 1U);
    EXPECT_EQ(streams[0].length, 10);
    EXPECT_EQ(streams[1].kind, Stream::Kind::sound);
    EXPECT_EQ(streams[1].length, 48);
    EXPECT_EQ(streams[2].className, "") << "the third track has no descriptor";
    EXPECT_EQ(streams[2].kind, Stream::Kind::sound);
}

/// The package that is in the file has a locator as well.
TEST(Streams, areExternalWhereAPackageHasALocatorAndNoEssenceInTheFile) {
    for (const bool isInFile : {false, true}) {
        EssenceClip clip;
        const unsigned locator =
            clip.add(networkLocator, {{Item::url.item, utf16(u"media/v0.mxf")}});
        const unsigned picture =
            clip.add(cdci, {{Item::locators.item, ClipBuilder::references({locator})}});
        const unsigned data = clip.add(essenceData, {{Item::linkedPackageId.item, umid(2)}});
        clip.package(sourcePackageSet, umid(2), {clip.clip(1, {}, pictureTrack, 10)},
                     {{Item::descriptor.item, uuid(picture)}});
        const auto streams = clip.essence(isInFile ? Properties{{Item::essenceDataObjects.item,
                                                                 ClipBuilder::references({data})}}
                                                   : Properties{})
                                 .streams;
        ASSERT_EQ(streams.size(), 1U);
        EXPECT_EQ(streams[0].isExternal, !isInFile);
        EXPECT_THAT(streams[0].locators, ElementsAre("media/v0.mxf"));
        EXPECT_EQ(streams[0].track, 1U) << "of one descriptor and one track";
    }
}

TEST(Streams, groupChannelsByTheirLinksAndOrderThemByTheirNumbers) {
    const auto channel = [](unsigned number_, const char16_t* symbol, unsigned link) {
        return std::pair<unsigned char, Properties>{
            channelLabel,
            {{Item::mcaChannelId.item, number(number_, 4)},
             {Item::mcaTagSymbol.item, utf16(symbol)},
             {Item::soundfieldGroupLinkId.item, uuid(link)}}};
    };
    const auto essence = essenceOf(wavePcm, {{Item::channelCount.item, number(2, 4)}},
                                   {channel(2, u"chR", 99),
                                    channel(3, u"chX", 98),
                                    channel(1, u"chL", 99),
                                    {groupLabel,
                                     {{Item::mcaLinkId.item, uuid(99)},
                                      {Item::mcaTagName.item, utf16(u"Standard Stereo")},
                                      {Item::mcaTitle.item, utf16(u"The testing")}}}},
                                   soundTrack);
    ASSERT_EQ(essence.streams.size(), 1U);
    const auto& groups = essence.streams[0].sound->groups;
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].name, "Standard Stereo");
    EXPECT_EQ(groups[0].title, "The testing");
    ASSERT_EQ(groups[0].channels.size(), 2U);
    EXPECT_EQ(groups[0].channels[0].symbol, "L");
    EXPECT_EQ(groups[0].channels[1].symbol, "R");
    EXPECT_EQ(groups[1].channels.size(), 1U) << "of no group that is there";
    ASSERT_EQ(essence.contradictions.size(), 1U);
    EXPECT_EQ(essence.contradictions[0].text, "ChannelCount says 2, but 3 channels have labels");
}

TEST(Streams, areObjectBasedWhereImmersiveSoundHasNoChannels) {
    const Properties none = {{Item::channelCount.item, number(0, 4)}};
    EXPECT_TRUE(essenceOf(immersive, none, {}, soundTrack).streams.at(0).sound->isObjectBased);
    EXPECT_FALSE(essenceOf(wavePcm, none, {}, soundTrack).streams.at(0).sound->isObjectBased);
}

} // namespace
} // namespace Corvid::Testing
