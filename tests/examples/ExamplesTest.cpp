#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <set>

using namespace Corvid::Testing;
using testing::HasSubstr;

namespace {

std::filesystem::path programs() {
    const char* const folder = std::getenv("CORVID_EXAMPLES");
    return folder == nullptr ? CORVID_TEST_EXAMPLES : folder;
}

class Examples : public testing::Test {
protected:
    Examples() {
        shop.write("sample.mxf", shop.run("cat '" + example("sample.mxf") + "'").out);
        shop.write("bad.mxf", std::string("not MXF"));
    }

    /// A file in the folder of the examples.
    static std::string example(const char* name) {
        return (sourceDir() / "examples" / name).string();
    }
    /// Runs an example with its arguments.
    Outcome run(const std::string& line) const {
        return shop.run("'" + programs().string() + "'/" + line);
    }
    std::string get(const std::string& arguments) const {
        const Outcome outcome = shop.run("corvid get " + arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.out;
    }

    const Workshop shop;
};

TEST_F(Examples, haveATestEach) {
    const std::set<std::string> tested{"printMetadata",  "printTracks",  "queryDocument",
                                       "changeMetadata", "makeMetadata", "ownDefinitions",
                                       "convertFiles",   "editClip"};
    std::set<std::string> there;
    for (const auto& entry : std::filesystem::directory_iterator(sourceDir() / "examples")) {
        if (entry.path().extension() == ".cpp") {
            there.insert(entry.path().stem().string());
        }
    }
    EXPECT_EQ(there, tested);
}

TEST_F(Examples, sayWhatIsWrong) {
    for (const char* line :
         {"printMetadata bad.mxf", "printTracks bad.mxf", "queryDocument bad.mxf /",
          "changeMetadata bad.mxf New new.mxf", "convertFiles bad.mxf", "editClip bad.mxf New"}) {
        const Outcome outcome = run(line);
        EXPECT_EQ(outcome.status, 1) << line;
        EXPECT_EQ(outcome.out, "") << line;
        EXPECT_THAT(outcome.err, HasSubstr("bad.mxf: not an MXF file: no partition pack")) << line;
    }
    EXPECT_FALSE(shop.has("new.mxf"));
    EXPECT_EQ(run("printTracks").status, 2);
}

TEST_F(Examples, printMetadata) {
    const Outcome outcome = run("printMetadata sample.mxf");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("<s377m:Preface"));
    EXPECT_THAT(outcome.out, HasSubstr("Test picture and tone"));
}

TEST_F(Examples, printWarnings) {
    const std::string bytes = shop.read("sample.mxf");
    shop.write("cut.mxf", bytes.substr(0, bytes.size() - 700));
    for (const char* line :
         {"printMetadata cut.mxf", "printTracks cut.mxf", "convertFiles cut.mxf"}) {
        const Outcome outcome = run(line);
        EXPECT_EQ(outcome.status, 0) << line << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("warning: ")) << line;
    }
}

TEST_F(Examples, printTracks) {
    EXPECT_EQ(run("printTracks sample.mxf").out, "material package Test picture and tone\n"
                                                 "  track 1: Timecode, 1 s, from 10:00:00:00\n"
                                                 "  track 2: Picture, 1 s\n"
                                                 "  track 3: Sound, 1 s\n"
                                                 "file source package \n"
                                                 "  track 1: Timecode, 1 s, from 10:00:00:00\n"
                                                 "  track 2: Picture, 1 s\n"
                                                 "  track 3: Sound, 1 s\n");
}

TEST_F(Examples, queryDocument) {
    const Outcome outcome =
        run("queryDocument sample.mxf '//s377m:TimelineTrack[rp210:EssenceTrackNumber > 0]"
            "/rp210:TrackID'");
    if (outcome.err.find("the document has no XPath") != std::string::npos) {
        GTEST_SKIP() << "built without XQilla";
    }
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "rp210:TrackID: 2\nrp210:TrackID: 3\n");
    EXPECT_THAT(run("queryDocument sample.mxf '//['").err, HasSubstr("sample.mxf: XPath //[: "));
}

TEST_F(Examples, changeMetadata) {
    const Outcome outcome = run("changeMetadata sample.mxf 'Größer' new.mxf");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "was: Test picture and tone\n");
    EXPECT_EQ(get("new.mxf MaterialPackage/PackageName"), "Größer\n");
    EXPECT_THAT(shop.run("corvid diff sample.mxf new.mxf").out, HasSubstr("PackageName"));
    EXPECT_EQ(shop.run("corvid check new.mxf").status, 0);
}

TEST_F(Examples, makeMetadata) {
    const Outcome outcome = run("makeMetadata 'From nothing' new.mxf");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Outcome info = shop.run("corvid info --warnings-as-errors new.mxf");
    EXPECT_EQ(info.status, 0) << info.err;
    EXPECT_THAT(info.out, HasSubstr("From nothing"));
    EXPECT_THAT(info.out, HasSubstr("10:00:00:00"));
    EXPECT_THAT(info.out, HasSubstr("OP1a"));
    EXPECT_EQ(shop.run("corvid check new.mxf").status, 0);
}

// FFmpeg takes no file without essence.
TEST_F(Examples, makeMetadataThatOthersRead) {
    if (shop.run("command -v mediainfo").status != 0) {
        GTEST_SKIP() << "no mediainfo";
    }
    run("makeMetadata 'From nothing' new.mxf");
    const std::string read =
        shop.run("mediainfo --Inform='General;%Format% %Format_Profile% %PackageName%' new.mxf")
            .out;
    EXPECT_EQ(read, "MXF OP-1a From nothing\n");
}

TEST_F(Examples, ownDefinitions) {
    const std::string definitions = "'" + example("house.dict") + "'";
    const Outcome set = shop.run("corvid set --dictionary " + definitions +
                                 " sample.mxf SourcePackage/Shelf=A12 -o new.mxf");
    ASSERT_EQ(set.status, 0) << set.err;
    const Outcome outcome = run("ownDefinitions " + definitions + " new.mxf SourcePackage");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("SourcePackage\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\n  Shelf: A12\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\n  CreationTime: 2024-01-01 12:00:00.000\n"));
    shop.write("bad.dict", std::string("nonsense\n"));
    EXPECT_THAT(run("ownDefinitions bad.dict new.mxf SourcePackage").err, HasSubstr("bad.dict"));
}

TEST_F(Examples, convertFiles) {
    shop.run("for i in 1 2 3 4 5; do cp sample.mxf $i.mxf; done");
    const Outcome outcome = run("convertFiles 1.mxf 2.mxf bad.mxf 3.mxf none.mxf 4.mxf 5.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("bad.mxf: not an MXF file"));
    EXPECT_THAT(outcome.err, HasSubstr("none.mxf: "));
    const std::string expected = shop.run("corvid to-xml sample.mxf").out;
    for (const char* name : {"1.mxf.xml", "2.mxf.xml", "3.mxf.xml", "4.mxf.xml", "5.mxf.xml"}) {
        EXPECT_EQ(shop.read(name), expected) << name;
    }
    EXPECT_FALSE(shop.has("bad.mxf.xml"));
    EXPECT_EQ(shop.count(), 12U);
}

TEST_F(Examples, editClip) {
    const Outcome outcome = run("editClip sample.mxf 'New title'");
    EXPECT_EQ(outcome.out, "changed\n") << outcome.err;
    EXPECT_EQ(get("sample.mxf MaterialPackage/PackageName"), "New title\n");
    EXPECT_EQ(run("editClip sample.mxf 'New title'").out, "nothing to change\n");
}

} // namespace
