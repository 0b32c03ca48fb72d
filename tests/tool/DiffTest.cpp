#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace Corvid::Testing;
using ::testing::HasSubstr;

namespace {

/// A clip, its document, and both after an edit.
class Diff : public ::testing::Test {
protected:
    Diff() {
        std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf", shop.path() / "a.mxf");
        shop.run("corvid set a.mxf 'MaterialPackage/PackageName=New' MPEGVideoDescriptor/"
                 "PictureCompression=06.0e.2b.34.04.01.01.03.04.01.02.02.01.02.02.00 "
                 "--no-identification --allow-technical -o b.mxf");
        shop.run("corvid to-xml a.mxf -o a.xml; corvid to-xml b.mxf -o b.xml");
    }

    const Workshop shop;
};

const char* const edit =
    "changed MaterialPackage ad.ab.44.24.2f.25.4d.c7.92.ff.00.01.00.00.00.00\n"
    "  PackageName: \"Test picture and tone\" -> \"New\"\n"
    "changed MPEGVideoDescriptor ad.ab.44.24.2f.25.4d.c7.92.ff.00.0e.00.00.00.00\n"
    "  PictureCompression: MPEG-2 MP-ML Long GOP (06.0e.2b.34.04.01.01.03.04.01.02.02.01.01.11.00) "
    "-> MPEG-2 422P-ML I-Frame (06.0e.2b.34.04.01.01.03.04.01.02.02.01.02.02.00)\n";

class DiffOf : public Diff, public ::testing::WithParamInterface<const char*> {};

TEST_P(DiffOf, showsWhatChanged) {
    const Outcome outcome = shop.run(std::string("corvid diff ") + GetParam());
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, edit);
    EXPECT_EQ(outcome.err, "");
}

INSTANTIATE_TEST_SUITE_P(WhateverTheyAre, DiffOf,
                         ::testing::Values("a.mxf b.mxf", "a.mxf b.xml", "a.xml b.mxf",
                                           "a.xml b.xml", "- b.mxf <a.mxf", "a.xml - <b.xml"));

TEST_F(Diff, saysWhereThereIsNone) {
    for (const char* const files : {"a.mxf a.mxf", "a.mxf a.xml", "b.xml b.mxf", "b.xml b.xml"}) {
        const Outcome outcome = shop.run(std::string("corvid diff ") + files);
        EXPECT_EQ(outcome.status, 0) << files;
        EXPECT_EQ(outcome.out, "no difference\n") << files;
    }
}

TEST_F(Diff, takesTheFormOfAPartialDocument) {
    shop.run("corvid to-xml a.mxf --structural-only --references values -o part.xml");
    EXPECT_EQ(shop.run("corvid diff a.mxf part.xml").out, "no difference\n");
    EXPECT_EQ(shop.run("corvid diff part.xml b.mxf").out, edit);
}

TEST_F(Diff, printsTheLinesOfADryRun) {
    const std::string dryRun =
        shop.run("corvid apply b.xml a.mxf --dry-run --no-identification --allow-technical").out;
    EXPECT_EQ(dryRun.substr(0, std::string(edit).size()), edit);
}

TEST_F(Diff, showsTimecodeAsTimecode) {
    shop.run("corvid set a.mxf Timecode/StartTimecode=90000 --all --no-identification -o c.mxf");
    EXPECT_THAT(shop.run("corvid diff a.mxf c.mxf").out,
                HasSubstr("\n  StartTimecode: 10:00:00:00 (900000) -> 01:00:00:00 (90000)\n"));
    shop.run("corvid set c.mxf Timecode/FramesPerSecond=30 Timecode/DropFrame=1 "
             "Timecode/StartTimecode=107892 --all --allow-technical --no-identification");
    const auto json = nlohmann::json::parse(shop.run("corvid diff c.mxf a.mxf --json").out);
    const auto& properties = json["sets"][0]["properties"];
    const auto start = std::find_if(properties.begin(), properties.end(), [](const auto& each) {
        return each["name"] == "StartTimecode";
    });
    ASSERT_NE(start, properties.end());
    EXPECT_EQ((*start)["before"], "01:00:00;00 (107892)");
    EXPECT_EQ((*start)["after"], "10:00:00:00 (900000)");
}

TEST_F(Diff, matchesSetsWithOtherIdentifiers) {
    shop.run("corvid from-xml b.xml --new-identifiers -o new.mxf");
    const Outcome outcome = shop.run("corvid diff a.mxf new.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, edit + std::string("27 sets have other InstanceUIDs\n"));
}

TEST_F(Diff, printsTheSameForPrograms) {
    const Outcome outcome = shop.run("corvid diff a.mxf b.mxf --json");
    EXPECT_EQ(outcome.status, 1);
    const auto json = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(json["before"], "a.mxf");
    EXPECT_EQ(json["after"], "b.mxf");
    EXPECT_EQ(json["same"], false);
    EXPECT_EQ(json["otherInstanceUIDs"], 0);
    ASSERT_EQ(json["sets"].size(), 2U);
    EXPECT_EQ(json["sets"][0]["properties"][0]["after"], "\"New\"");
    const Outcome same = shop.run("corvid diff a.mxf a.mxf --json");
    EXPECT_EQ(same.status, 0);
    EXPECT_EQ(nlohmann::json::parse(same.out)["same"], true);
}

TEST_F(Diff, endsWithAStatusOfItsOwnWhereAFileCantBeRead) {
    shop.write("cut.xml", shop.read("a.xml").substr(0, 2000));
    shop.write("wrong.xml", std::string("<wrong/>"));
    shop.write("cut.mxf", shop.read("a.mxf").substr(0, 100));
    for (const char* const file : {"none.mxf", "cut.xml", "wrong.xml", "cut.mxf"}) {
        for (const std::string& files :
             {"a.mxf " + std::string(file), file + std::string(" a.xml")}) {
            const Outcome outcome = shop.run("corvid diff " + files);
            EXPECT_EQ(outcome.status, 3) << files;
            EXPECT_EQ(outcome.out, "") << files;
            EXPECT_THAT(outcome.err, HasSubstr("corvid: " + std::string(file) + ": ")) << files;
        }
    }
    EXPECT_EQ(shop.run("corvid diff - - <a.mxf").status, 2);
}

TEST_F(Diff, findsNoneBetweenASampleAndWhatBecomesOfIt) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "there are no samples";
    }
    for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        const std::string clip = entry.path().string();
        shop.run("corvid to-xml --replace-invalid " + clip +
                 " -o doc.xml; corvid from-xml doc.xml --new-identifiers -o new.mxf");
        EXPECT_EQ(shop.run("corvid diff doc.xml " + clip).out, "no difference\n") << clip;
        EXPECT_THAT(shop.run("corvid diff new.mxf " + clip).out,
                    ::testing::MatchesRegex("[0-9]+ sets have other InstanceUIDs\n"))
            << clip;
    }
}

} // namespace
