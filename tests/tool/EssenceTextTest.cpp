#include "tools/corvid/reports/EssenceText.h"

#include "inspection/Summary.h"
#include "tools/corvid/terminal/WarningLog.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

Inspection::Stream sound(Types::u32 track, const std::string& name, const std::string& codec) {
    Inspection::Stream stream;
    stream.kind = Inspection::Stream::Kind::sound;
    stream.className = "WAVEPCMDescriptor";
    stream.track = track;
    stream.trackName = name;
    stream.codec = codec;
    stream.sound.emplace();
    stream.sound->channels = 1;
    stream.sound->sampleRate = Types::Rational(44100, 1);
    return stream;
}

Inspection::Summary summaryOf(std::vector<Inspection::Stream> streams) {
    Inspection::Summary summary;
    summary.file = "clip.mxf";
    summary.essence.title = "A title";
    summary.essence.material.umid = "urn:smpte:umid:0";
    summary.essence.streams = std::move(streams);
    return summary;
}

std::string textOf(const Inspection::Summary& summary, bool all = false) {
    Tool::SummaryText what;
    what.all = all;
    return Tool::essenceText(summary, {}, what);
}

TEST(EssenceText, foldsStreamsThatAreAlike) {
    EXPECT_EQ(textOf(summaryOf({sound(1, "A1", "PCM"), sound(2, "A2", "PCM"),
                                sound(4, "A4", "AC-3"), sound(3, "A3", "PCM")})),
              "clip.mxf  MXF\n"
              "Title      A title\n"
              "Sound      A1, A2, A3, tracks 1-3\n"
              "  PCM, 44.1 kHz, 1 channel each\n"
              "Sound      A4, track 4\n"
              "  AC-3, 44.1 kHz, 1 channel\n"
              "Material   urn:smpte:umid:0\n");
}

TEST(EssenceText, namesTheFirstAndTheLastOfManyTracks) {
    std::vector<Inspection::Stream> streams;
    for (Types::u32 i = 1; i != 17; ++i) {
        streams.push_back(sound(2 * i, "A" + std::to_string(i), "PCM"));
    }
    EXPECT_THAT(textOf(summaryOf(streams)),
                HasSubstr("Sound      A1, ..., A16, tracks 2, 4, 6, 8, 10, 12, ...\n"));
}

TEST(EssenceText, hasNoMoreLinesThanAreTakenInAtAGlance) {
    for (const std::size_t count : {10U, 11U, 12U, 100U}) {
        std::vector<Inspection::Stream> streams;
        for (std::size_t i = 0; i != count; ++i) {
            streams.push_back(sound(static_cast<Types::u32>(i), "", std::to_string(i)));
        }
        const auto summary = summaryOf(streams);
        const std::string text = textOf(summary);
        const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        // A title line, the title and the identifier beside two lines for each stream.
        const bool fits = 3 + 2 * count <= Tool::mostLines;
        EXPECT_EQ(lines, fits ? 3 + 2 * count : Tool::mostLines) << text;
        const std::string more =
            "  " + std::to_string(2 * count - (Tool::mostLines - 4)) + " more lines: --all\n";
        EXPECT_EQ(text.find(more) == std::string::npos, fits) << text;
        EXPECT_THAT(text, HasSubstr("\nMaterial   urn:smpte:umid:0\n"));
        EXPECT_THAT(textOf(summary, true), Not(HasSubstr("--all")));
    }
}

} // namespace
} // namespace Corvid::Testing
