#include "tests/inspection/essence/EssenceClip.h"
#include "tools/corvid/reports/StreamText.h"

#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using Inspection::Picture;

constexpr unsigned char cdci = 0x28;
constexpr unsigned char rgba = 0x29;
constexpr unsigned char mpegVideo = 0x51;
constexpr unsigned char jpeg2000 = 0x5A;

Bytes u8(unsigned value) { return number(value, 1); }
Bytes u32(unsigned value) { return number(value, 4); }

Bytes label(std::uint64_t back) { return join({hex("060e2b34 04010101"), number(back, 8)}); }

Properties joined(Properties a, const Properties& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// The third line of a picture's text, or another.
std::string line(const Inspection::Essence& essence, std::size_t number) {
    return Tool::streamLines(essence.streams.at(0), 1, false).at(number);
}

struct PictureCase {
    const char* name;
    unsigned char set;
    Properties properties;
    std::vector<std::pair<unsigned char, Properties>> subDescriptors;
    std::size_t line;
    const char* text;
    std::size_t contradictions = 0;
};

class PictureText : public ::testing::TestWithParam<PictureCase> {};

TEST_P(PictureText, saysWhatThePropertiesSay) {
    const auto& param = GetParam();
    const auto essence = essenceOf(param.set, param.properties, param.subDescriptors);
    ASSERT_EQ(essence.streams.size(), 1U);
    EXPECT_EQ(line(essence, param.line), param.text);
    EXPECT_EQ(essence.contradictions.size(), param.contradictions);
}

Properties stored(unsigned width, unsigned height, unsigned layout) {
    return {{Item::storedWidth.item, u32(width)},
            {Item::storedHeight.item, u32(height)},
            {Item::frameLayout.item, u8(layout)},
            {Item::sampleRate.item, rational(25, 1)}};
}

Bytes layout(std::initializer_list<std::pair<char, unsigned>> components) {
    Bytes bytes;
    for (const auto& [code, depth] : components) {
        bytes.push_back(static_cast<unsigned char>(code));
        bytes.push_back(static_cast<unsigned char>(depth));
    }
    bytes.resize(16);
    return bytes;
}

Properties componentSizing(unsigned sSiz) {
    return {{Item::pictureComponentSizing.item, batch({number(sSiz << 16 | 0x0101, 3)}, 3)}};
}

INSTANTIATE_TEST_SUITE_P(
    Size, PictureText,
    ::testing::Values(
        PictureCase{"FullFrame",
                    cdci,
                    stored(1920, 1080, 0),
                    {},
                    0,
                    "coding not stated, 1920 x 1080, 25 fps"},
        PictureCase{"SeparateFieldsAreTwo",
                    cdci,
                    stored(1920, 540, 1),
                    {},
                    0,
                    "coding not stated, 1920 x 1080, 25 fps"},
        PictureCase{"SingleFieldIsOne",
                    cdci,
                    stored(720, 288, 2),
                    {},
                    0,
                    "coding not stated, 720 x 288, 25 fps"},
        PictureCase{"MixedFieldsAreWhole",
                    cdci,
                    stored(720, 576, 3),
                    {},
                    0,
                    "coding not stated, 720 x 576, 25 fps"},
        PictureCase{"SegmentsAreTwo",
                    cdci,
                    stored(1920, 540, 4),
                    {},
                    0,
                    "coding not stated, 1920 x 1080, 25 fps"},
        PictureCase{"GreatHeightDoesNotOverflow",
                    cdci,
                    stored(1, 0xFFFFFFFF, 1),
                    {},
                    0,
                    "coding not stated, 1 x 8589934590, 25 fps"},
        PictureCase{"DisplayComesFirst",
                    cdci,
                    joined(stored(1920, 544, 1), {{Item::sampledHeight.item, u32(542)},
                                                  {Item::displayHeight.item, u32(540)}}),
                    {},
                    0,
                    "coding not stated, 1920 x 1080, stored 1920 x 1088, 25 fps"},
        PictureCase{"SampledComesSecond",
                    cdci,
                    joined(stored(1920, 1088, 0), {{Item::sampledHeight.item, u32(1080)}}),
                    {},
                    0,
                    "coding not stated, 1920 x 1080, stored 1920 x 1088, 25 fps"},
        PictureCase{"RateOfThousandths",
                    cdci,
                    {{Item::storedWidth.item, u32(8)},
                     {Item::storedHeight.item, u32(8)},
                     {Item::imageAspectRatio.item, rational(16, 9)}},
                    {},
                    0,
                    "coding not stated, 8 x 8, 16:9, rate not stated"},
        PictureCase{"NothingAtAll", cdci, {}, {}, 0, "coding not stated, ? x ?, rate not stated"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Scan, PictureText,
    ::testing::Values(
        PictureCase{"NotStated", cdci, {}, {}, 1, "scan not stated"},
        PictureCase{"Progressive", cdci, stored(8, 8, 0), {}, 1, "progressive"},
        PictureCase{
            "NoFieldOrder", cdci, stored(8, 8, 1), {}, 1, "interlaced, field order not stated"},
        PictureCase{"FieldOne",
                    cdci,
                    joined(stored(8, 8, 1), {{Item::fieldDominance.item, u8(1)}}),
                    {},
                    1,
                    "interlaced, field 1 first"},
        PictureCase{"FieldTwo",
                    cdci,
                    joined(stored(8, 8, 3), {{Item::fieldDominance.item, u8(2)}}),
                    {},
                    1,
                    "interlaced, field 2 first"},
        PictureCase{"NoSuchField",
                    cdci,
                    joined(stored(8, 8, 3), {{Item::fieldDominance.item, u8(3)}}),
                    {},
                    1,
                    "interlaced, field order not stated"},
        PictureCase{"NoSuchLayout", cdci, stored(8, 8, 5), {}, 1, "scan not stated"},
        PictureCase{"Segments", cdci, stored(8, 8, 4), {}, 1, "progressive, segmented frames"},
        PictureCase{"ProgressiveThatIsCodedInterlaced",
                    mpegVideo,
                    joined(stored(8, 8, 0), {{Item::codedContentScanning.item, u8(2)}}),
                    {},
                    1,
                    "progressive",
                    1},
        PictureCase{"InterlacedThatIsCodedProgressive",
                    mpegVideo,
                    joined(stored(8, 8, 1), {{Item::codedContentScanning.item, u8(1)}}),
                    {},
                    1,
                    "interlaced, field order not stated",
                    1},
        PictureCase{"InterlacedThatIsCodedMixed",
                    mpegVideo,
                    joined(stored(8, 8, 1), {{Item::codedContentScanning.item, u8(3)}}),
                    {},
                    1,
                    "interlaced, field order not stated",
                    0}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Samples, PictureText,
    ::testing::Values(
        PictureCase{"NotStated", cdci, {}, {}, 2, "bits not stated"},
        PictureCase{"Depth",
                    cdci,
                    {{Item::componentDepth.item, u32(10)},
                     {Item::horizontalSubsampling.item, u32(2)},
                     {Item::verticalSubsampling.item, u32(1)},
                     {Item::blackRefLevel.item, u32(64)},
                     {Item::whiteRefLevel.item, u32(940)}},
                    {},
                    2,
                    "10 bit 4:2:2, levels 64-940"},
        PictureCase{"VerticalThatIsAbsentIsOne",
                    cdci,
                    {{Item::horizontalSubsampling.item, u32(1)}},
                    {},
                    2,
                    "4:4:4"},
        PictureCase{
            "FourTwoZero",
            cdci,
            {{Item::horizontalSubsampling.item, u32(2)}, {Item::verticalSubsampling.item, u32(2)}},
            {},
            2,
            "4:2:0"},
        PictureCase{
            "FourOneOne", cdci, {{Item::horizontalSubsampling.item, u32(4)}}, {}, 2, "4:1:1"},
        PictureCase{"OddSampling",
                    cdci,
                    {{Item::horizontalSubsampling.item, u32(3)}},
                    {},
                    2,
                    "subsampled 3/1"},
        PictureCase{"LayoutWithoutAlphaAndFill",
                    rgba,
                    {{Item::pixelLayout.item,
                      layout({{'A', 2}, {'F', 4}, {'R', 12}, {'G', 12}, {'B', 12}})}},
                    {},
                    2,
                    "12 bit RGBA"},
        PictureCase{"LayoutInAnotherOrder",
                    rgba,
                    {{Item::pixelLayout.item, layout({{'B', 8}, {'G', 8}, {'R', 8}})}},
                    {},
                    2,
                    "8 bit RGB"},
        PictureCase{"HalfFloat",
                    rgba,
                    {{Item::pixelLayout.item, layout({{'R', 253}, {'G', 253}, {'B', 253}})}},
                    {},
                    2,
                    "16 bit float RGB"},
        PictureCase{"GreatestCodeValue",
                    rgba,
                    {{Item::componentMaxRef.item, u32(4095)}, {Item::componentMinRef.item, u32(0)}},
                    {},
                    2,
                    "12 bit, levels 0-4095"},
        PictureCase{"LegalRange", rgba, {{Item::componentMaxRef.item, u32(940)}}, {}, 2, "10 bit"},
        PictureCase{"CodingComesFirst", cdci, {}, {{jpeg2000, componentSizing(11)}}, 2, "12 bit"},
        PictureCase{"SignedCoding", cdci, {}, {{jpeg2000, componentSizing(0x8B)}}, 2, "12 bit"},
        PictureCase{"CodingThatDiffersFromTheLevels",
                    rgba,
                    {{Item::componentMaxRef.item, u32(1023)}},
                    {{jpeg2000, componentSizing(11)}},
                    2,
                    "12 bit or 10 bit",
                    1},
        PictureCase{"FormatOfSixteenToNine",
                    cdci,
                    {{Item::activeFormatDescriptor.item, u8(0x54)}},
                    {},
                    2,
                    "AFD 10"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Colour, PictureText,
    ::testing::Values(
        PictureCase{"AllAlike",
                    cdci,
                    {{Item::colorPrimaries.item, label(0x0401010103030000)},
                     {Item::transferCharacteristic.item, label(0x0401010101020000)},
                     {Item::codingEquations.item, label(0x0401010102020000)}},
                    {},
                    2,
                    "BT.709"},
        PictureCase{"PrimariesAloneAreNotAll",
                    cdci,
                    {{Item::colorPrimaries.item, label(0x0401010103030000)}},
                    {},
                    2,
                    "primaries BT.709"},
        PictureCase{"HighDynamicRange",
                    cdci,
                    {{Item::colorPrimaries.item, label(0x0401010103040000)},
                     {Item::transferCharacteristic.item, label(0x04010101010a0000)},
                     {Item::codingEquations.item, label(0x0401010102060000)}},
                    {},
                    2,
                    "primaries BT.2020, transfer PQ, matrix BT.2020"},
        PictureCase{"MasteringDisplay",
                    rgba,
                    {{Item::masteringDisplayPrimaries.item, hex("84d0 3e80 33c2 86c4 1d4c 0bb8")},
                     {Item::masteringDisplayWhitePointChromaticity.item, hex("3d13 4042")},
                     {Item::masteringDisplayMaximumLuminance.item, u32(40000000)},
                     {Item::masteringDisplayMinimumLuminance.item, u32(50)}},
                    {},
                    3,
                    "mastered on 0.005-4000 cd/m², R 0.68/0.32 G 0.265/0.69 B 0.15/0.06, "
                    "white 0.3127/0.329"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(PictureRates, thatDifferFromTheTrackAreAContradiction) {
    const auto essence = essenceOf(cdci, {{Item::sampleRate.item, rational(50, 1)}});
    ASSERT_EQ(essence.contradictions.size(), 1U);
    EXPECT_EQ(essence.contradictions.front().text,
              "SampleRate says 50/1, EditRate of its track 25/1");
    EXPECT_EQ(essence.contradictions.front().set, "CDCIDescriptor");
    EXPECT_TRUE(essenceOf(cdci, {{Item::sampleRate.item, rational(50, 2)}}).contradictions.empty());
}

TEST(PictureRates, areShownExactlyWhereTheyAreNoWholeNumbers) {
    EXPECT_EQ(Tool::frameRateText(Types::Rational(25, 1)), "25 fps");
    EXPECT_EQ(Tool::frameRateText(Types::Rational(30000, 1001)), "29.97 fps (30000/1001)");
    EXPECT_EQ(Tool::frameRateText(Types::Rational(24000, 1001)), "23.976 fps (24000/1001)");
    EXPECT_EQ(Tool::frameRateText(Types::Rational(0, 0)), "0/0 fps");
}

} // namespace
} // namespace Corvid::Testing
