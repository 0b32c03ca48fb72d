#include "tests/inspection/essence/EssenceClip.h"

#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

using ::testing::ElementsAre;

constexpr unsigned char descriptiveMarker = 0x41;
constexpr unsigned char wavePcm = 0x48;

Bytes frameworkKey(std::uint64_t back) { return join({hex("060e2b34 02530101"), number(back, 8)}); }
const Bytes as11Core = frameworkKey(0x0d0107010b010100);
const Bytes ukDpp = frameworkKey(0x0d0c010101010000);
const Bytes infax = frameworkKey(0x0d04010101010000);
const Bytes crypto = frameworkKey(0x0d01040102010000);
const Bytes cryptoContext = frameworkKey(0x0d01040102020000);

/// A track of a marker that refers to a framework.
unsigned markerTrack(EssenceClip& clip, unsigned framework) {
    const unsigned marker =
        clip.add(descriptiveMarker, {{Item::descriptiveFrameworkObject.item, uuid(framework)}});
    return clip.track(5, {}, marker);
}

TEST(Schemes, sayWhatEditorsWantToKnow) {
    EssenceClip clip;
    const unsigned core = clip.add(as11Core, {{0x0d0107010b010105, number(3, 1)},
                                              {0x0d0107010b010106, utf16(u"eng")},
                                              {0x0d0107010b010107, number(0, 1)},
                                              {0x0d0107010b010104, utf16(u"UK DPP HD")},
                                              {0x0d0107010b01010a, number(0x0101, 2)},
                                              {0x0d0107010b010102, utf16(u"Depths")}});
    const unsigned dpp = clip.add(ukDpp, {{0x0d0c010101010d00, number(1, 1)},
                                          {0x0d0c010101010e00, utf16(u"Harding")},
                                          {0x0d0c010101010f00, utf16(u"1.0 alpha")},
                                          {0x0d0c010101011e00, number(2, 1)}});
    clip.package(materialPackageSet, umid(1), {markerTrack(clip, core), markerTrack(clip, dpp)});
    const auto essence = clip.essence();
    EXPECT_EQ(essence.shim, "UK DPP HD 1.1");
    EXPECT_EQ(essence.title, "Depths") << "the package has no name";
    const auto lines = schemeLines(essence.schemes);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].scheme, "AS-11");
    EXPECT_THAT(lines[0].phrases, ElementsAre("EBU R 48 2a", "language eng", "captions no"));
    EXPECT_EQ(lines[1].scheme, "UK DPP");
    EXPECT_THAT(lines[1].phrases,
                ElementsAre("PSE no by Harding 1.0 alpha", "signing signer only"));
}

TEST(Schemes, showTheFirstFieldsWhereNothingSaysWhichMatter) {
    EssenceClip clip;
    const unsigned framework = clip.add(infax, {{0x0d04010101010101, utf16(u"LTO")}});
    clip.package(materialPackageSet, umid(1), {markerTrack(clip, framework)});
    const auto lines = schemeLines(clip.essence().schemes);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].scheme, "APP_InfaxFramework");
    EXPECT_LE(lines[0].phrases.size(), 4U);
}

TEST(Schemes, ofEncryptionNameTheKeyOfTheStreams) {
    EssenceClip clip;
    const unsigned context =
        clip.add(cryptoContext,
                 {{Item::cryptographicKeyId.item, hex("297ef9c9476b4297a0b2babb1eeeb1d8")},
                  {Item::sourceContainerFormat.item, hex("060e2b34 04010101 0d010301 02060100")}});
    const unsigned framework =
        clip.add(crypto, {{Item::cryptographicContextObject.item, uuid(context)}});
    const unsigned sound = clip.add(
        wavePcm, {{Item::linkedTrackId.item, number(2, 4)},
                  {Item::containerFormat.item, hex("060e2b34 04010107 0d010301 020b0100")}});
    clip.package(sourcePackageSet, umid(2),
                 {clip.clip(2, {}, soundTrack, 9), markerTrack(clip, framework)},
                 {{Item::descriptor.item, uuid(sound)}});
    const auto essence = clip.essence();
    ASSERT_EQ(essence.streams.size(), 1U);
    EXPECT_TRUE(essence.streams[0].isEncrypted);
    EXPECT_EQ(essence.streams[0].encryptionKey, "urn:uuid:297ef9c9-476b-4297-a0b2-babb1eeeb1d8");
    EXPECT_EQ(essence.streams[0].codec, "PCM") << "of the essence before it was encrypted";
    EXPECT_TRUE(essence.schemes.empty());
}

TEST(Schemes, thatReferToThemselvesAreMetOnce) {
    EssenceClip clip;
    const unsigned framework = clip.next();
    clip.addAs(framework, as11Core, {{Item::descriptiveFrameworkObject.item, uuid(framework)}});
    clip.package(materialPackageSet, umid(1),
                 {markerTrack(clip, framework), markerTrack(clip, framework)});
    EXPECT_EQ(clip.essence().schemes.size(), 1U);
}

} // namespace
} // namespace Corvid::Testing
