#include "inspection/Summary.h"
#include "inspection/StructuralLabels.h"

#include <gtest/gtest.h>

using namespace Corvid;
using namespace Corvid::Inspection;

namespace {

Types::UniversalLabel label(const char* text) {
    return {Platform::fromUtf8(text).c_str(), Types::dottedHexadecimal};
}

TEST(Summary, countsTimecodeWithoutDropFrame) {
    EXPECT_EQ(timecodeText({90000, 25, false}), "01:00:00:00");
    EXPECT_EQ(timecodeText({90061, 30, false}), "00:50:02:01");
    EXPECT_EQ(timecodeText({5, 0, false}), "5 frames");
    EXPECT_EQ(timecodeText({0x7FFFFFFFFFFFFFFF, 30, true}), "9223372036854775807 frames");
}

/// Counts one frame number after the other, as SMPTE ST 12-1 describes it.
std::string naiveDropFrame(Types::int64 frames, int rate) {
    int hour = 0, minute = 0, second = 0, frame = 0;
    while (frames-- != 0) {
        if (++frame == rate) {
            frame = 0;
            if (++second == 60) {
                second = 0;
                if (++minute == 60) {
                    minute = 0;
                    ++hour;
                }
                frame = minute % 10 == 0 ? 0 : rate / 15;
            }
        }
    }
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d;%02d", hour, minute, second, frame);
    return text;
}

TEST(Summary, countsDropFrameTimecode) {
    for (const int rate : {30, 60}) {
        for (const Types::int64 frames : {0, 1799, 1800, 1801, 3597, 3598, 3599, 3600, 17981, 17982,
                                          17983, 35963, 35964, 107891, 107892, 200000}) {
            EXPECT_EQ(timecodeText({frames, rate, true}), naiveDropFrame(frames, rate)) << frames;
        }
    }
}

TEST(Summary, durationsNeedARate) {
    EXPECT_DOUBLE_EQ(*seconds(30000, Types::Rational(30000, 1001)), 1001.0);
    EXPECT_FALSE(seconds(1, Types::Rational(25, 0)));
    EXPECT_FALSE(seconds(1, Types::Rational(0, 1)));
    EXPECT_FALSE(seconds(1, std::nullopt));
}

TEST(StructuralLabels, nameOperationalPatterns) {
    using Structural::operationalPatternName;
    EXPECT_EQ(operationalPatternName(label("06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00")),
              "OP1a");
    EXPECT_EQ(operationalPatternName(label("06.0e.2b.34.04.01.01.02.0d.01.02.01.03.02.01.00")),
              "OP3b");
    EXPECT_EQ(operationalPatternName(label("06.0e.2b.34.04.01.01.02.0d.01.02.01.10.00.00.00")),
              "OP-Atom");
    EXPECT_EQ(operationalPatternName(label("06.0e.2b.34.04.01.01.02.0d.01.02.01.04.01.00.00")), "");
    EXPECT_EQ(operationalPatternName(label("06.0e.2b.34.04.01.01.02.0d.01.02.02.01.01.00.00")), "");
    EXPECT_EQ(Structural::operationalPatternWords(
                  label("06.0e.2b.34.04.01.01.01.0d.01.02.01.02.03.07.00")),
              "playlist items, alternate packages, external essence, not for streaming, one track");
}

TEST(StructuralLabels, nameTrackKinds) {
    EXPECT_EQ(Structural::trackKind(label("06.0e.2b.34.04.01.01.07.01.03.02.02.01.00.00.00")),
              "Picture");
    EXPECT_EQ(Structural::trackKind(label("06.0e.2b.34.04.01.01.01.01.03.02.02.09.00.00.00")), "");
}

/// A property whose label the dictionary does not know, or knows with another type, is never found.
TEST(StructuralLabels, areThoseOfTheDictionary) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    const auto nameOf = [&](const auto& property) {
        const auto* const element = dictionary->findElement(property.label());
        return element == nullptr ? std::string("?")
                                  : Platform::toUtf8(element->attribute("XMLTagName"));
    };
    EXPECT_EQ(nameOf(Structural::contentStorage), "ContentStorageObject");
    EXPECT_EQ(nameOf(Structural::identifications), "IdentificationList");
    EXPECT_EQ(nameOf(Structural::operationalPattern), "OperationalPattern");
    EXPECT_EQ(nameOf(Structural::essenceContainers), "EssenceContainers");
    EXPECT_EQ(nameOf(Structural::descriptiveSchemes), "DescriptiveSchemes");
    EXPECT_EQ(nameOf(Structural::conformsTo), "ConformsToSpecifications");
    EXPECT_EQ(nameOf(Structural::companyName), "ApplicationSupplierName");
    EXPECT_EQ(nameOf(Structural::productName), "ApplicationName");
    EXPECT_EQ(nameOf(Structural::productVersion), "ApplicationVersion");
    EXPECT_EQ(nameOf(Structural::versionString), "ApplicationVersionString");
    EXPECT_EQ(nameOf(Structural::platform), "ApplicationPlatform");
    EXPECT_EQ(nameOf(Structural::toolkitVersion), "ToolkitVersion");
    EXPECT_EQ(nameOf(Structural::modificationDate), "FileModificationDate");
    EXPECT_EQ(nameOf(Structural::packages), "Packages");
    EXPECT_EQ(nameOf(Structural::packageId), "PackageID");
    EXPECT_EQ(nameOf(Structural::packageName), "PackageName");
    EXPECT_EQ(nameOf(Structural::packageCreated), "CreationTime");
    EXPECT_EQ(nameOf(Structural::tracks), "PackageTracks");
    EXPECT_EQ(nameOf(Structural::descriptor), "EssenceDescription");
    EXPECT_EQ(nameOf(Structural::fileDescriptors), "FileDescriptors");
    EXPECT_EQ(nameOf(Structural::subDescriptors), "SubDescriptors");
    EXPECT_EQ(nameOf(Structural::trackId), "TrackID");
    EXPECT_EQ(nameOf(Structural::trackName), "TrackName");
    EXPECT_EQ(nameOf(Structural::trackNumber), "EssenceTrackNumber");
    EXPECT_EQ(nameOf(Structural::trackSegment), "TrackSegment");
    EXPECT_EQ(nameOf(Structural::editRate), "EditRate");
    EXPECT_EQ(nameOf(Structural::eventEditRate), "EventTrackEditRate");
    EXPECT_EQ(nameOf(Structural::origin), "Origin");
    EXPECT_EQ(nameOf(Structural::dataDefinition), "ComponentDataDefinition");
    EXPECT_EQ(nameOf(Structural::duration), "ComponentLength");
    EXPECT_EQ(nameOf(Structural::components), "ComponentObjects");
    EXPECT_EQ(nameOf(Structural::startTimecode), "StartTimecode");
    EXPECT_EQ(nameOf(Structural::framesPerSecond), "FramesPerSecond");
    EXPECT_EQ(nameOf(Structural::dropFrame), "DropFrame");
    EXPECT_EQ(nameOf(Structural::definitionId), "DefinitionObjectIdentification");
    EXPECT_EQ(nameOf(Structural::definitionName), "DefinitionObjectName");
}

} // namespace
