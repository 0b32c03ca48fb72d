#include "tests/support/Golden.h"
#include "tests/tool/RunCommand.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

struct Kind {
    const char* golden;
    const char* sample;
};

class SampleInfo : public ::testing::TestWithParam<Kind> {};

TEST_P(SampleInfo, isTheTextThatAPersonHasLookedAt) {
    const auto sample = samplesDir() / GetParam().sample;
    if (samplesDir().empty() || !std::filesystem::exists(sample)) {
        GTEST_SKIP() << "no sample " << GetParam().sample;
    }
    const Workshop shop;
    const Outcome outcome = shop.run("cp '" + sample.string() + "' clip.mxf; corvid info clip.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(matchesGolden(outcome.out, std::string("info/") + GetParam().golden + ".txt"));
}

INSTANTIATE_TEST_SUITE_P(
    , SampleInfo,
    ::testing::Values(Kind{"broadcast-delivery", "ebu__bmx-as11-ukdpp-avci100-smallfill.mxf"},
                      Kind{"labelled-sound", "ebu__bmx-imf-audio-mca.mxf"},
                      Kind{"atom-of-a-tape", "ebu__bmx-avid-a1.mxf"},
                      Kind{"atom-of-an-import", "avid-technology-in__indirect.mxf"},
                      Kind{"external-essence", "ebu__bmx-as02.mxf"},
                      Kind{"archive-tape", "bbc__bbc-archive-sd.mxf"},
                      Kind{"four-groups-of-sound", "bbc__utf8-embedded-text.mxf"},
                      Kind{"ancillary-data", "ebu__bmx-rdd9-anc.mxf"},
                      Kind{"mastering-display", "widgetco__black-1sec.mxf"},
                      Kind{"half-float", "widgetco__reel2.mxf"},
                      Kind{"timed-text", "colorfront__image-imp1-01-tt.mxf"},
                      Kind{"encrypted",
                           "rohde-and-schwarz-__2k-di-20180103-ecl-iop-ov-audio-02.mxf"},
                      Kind{"immersive", "dolby-laboratories__meridian-2398-iab-5f.mxf"},
                      Kind{"playlist", "mxflib__mxflib-playlist.mxf"}),
    [](const auto& each) {
        std::string name = each.param.golden;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

TEST(SampleInfos, areNoLongerThanTwentyFiveLines) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "no folder of samples";
    }
    const Workshop shop;
    for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
        if (entry.path().extension() == ".mxf") {
            const std::string text = shop.run("corvid info '" + entry.path().string() + "'").out;
            EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 25) << text;
        }
    }
}

} // namespace
} // namespace Corvid::Testing
