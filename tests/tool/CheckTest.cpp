#include "tests/tool/RunCommand.h"

#include "host/mxf/File.h"
#include "tests/editing/Differences.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

const std::string smallLine = "clip.mxf: lossless (2 sets, 5 properties)\n";

class Check : public ::testing::Test {
protected:
    Check() {
        shop.write("clip.mxf", smallClip());
        shop.write("odd.mxf", clipWithCompany(u"a\u0001b"));
        shop.write("text.mxf", std::string("no MXF file"));
    }

    /// A file whose primer pack has the label of track names in two versions, of which a document
    /// keeps one: those of so many tracks come back with another.
    void writeTrap(std::size_t tracks = 1) const {
        constexpr unsigned trackNameTag = 0x4802;
        constexpr unsigned otherTag = 0x8001;
        auto labels = standardLabels();
        auto label = std::find_if(labels.begin(), labels.end(), [](const auto& entry) {
                         return entry.first == trackNameTag;
                     })->second;
        label[7] = 0x7F;
        labels.emplace_back(otherTag, label);
        std::vector<Bytes> sets = {primer(labels), smallSets()};
        for (std::size_t i = 0; i <= tracks; ++i) {
            sets.push_back(set(structuralKey(timelineTrackSet), static_cast<unsigned>(10 + i),
                               {property(i == 0 ? trackNameTag : otherTag, utf16(u"a"))}));
        }
        shop.write("trap.mxf",
                   MxfBuilder().add(headerPartition(join(sets))).withRandomIndexPack().build());
    }

    nlohmann::json json(const std::string& arguments, int status) const {
        const Outcome outcome = shop.run("corvid check --json " + arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        return nlohmann::json::parse(outcome.out);
    }

    /// What it prints of several files.
    std::vector<nlohmann::json> jsonLines(const std::string& arguments, int status) const {
        const Outcome outcome = shop.run("corvid check --json " + arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        std::vector<nlohmann::json> lines;
        std::istringstream stream(outcome.out);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(nlohmann::json::parse(line));
        }
        return lines;
    }

    Workshop shop;
};

TEST_F(Check, saysThatAFileIsLossless) {
    for (const char* line : {"corvid check clip.mxf", "corvid check clip.mxf --partition header"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, smallLine);
        EXPECT_THAT(outcome.err, IsEmpty());
    }
    EXPECT_EQ(shop.run("cat clip.mxf | corvid check -").out,
              "standard input" + smallLine.substr(8));
}

TEST_F(Check, countsWhatOnlyInstructionsCanSayAsLossless) {
    const Outcome outcome = shop.run("corvid check odd.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "odd.mxf: lossless (2 sets, 4 properties)\n");
}

TEST_F(Check, refusesWhatFromXmlWouldRefuse) {
    const Bytes primerBehind =
        klv(hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.05.01.00"), Bytes(8, 0));
    shop.write("primer.mxf", MxfBuilder()
                                 .add(headerPartition(join({smallMetadata(), primerBehind})))
                                 .withRandomIndexPack()
                                 .build());
    const Outcome outcome = shop.run("corvid check primer.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.05.01.00"));
    EXPECT_THAT(outcome.out, IsEmpty());
}

TEST_F(Check, saysThatAFileIsDifferent) {
    writeTrap();
    const Outcome outcome = shop.run("corvid check trap.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out,
              "trap.mxf: DIFFERENT: 1 difference (4 sets, 9 properties)\n"
              "  ! labelVersion (1): the version of a property's label is another\n"
              "      TimelineTrack 7a.00.00.00.00.00.40.00.80.00.00.00.00.01.00.0b: TrackName: "
              "version 7f came back as 02\n");
}

TEST_F(Check, goesOnWithTheNextFileAndCountsTheWorst) {
    writeTrap();
    const Outcome all = shop.run("corvid check clip.mxf gone.mxf odd.mxf "
                                 "text.mxf trap.mxf clip.mxf");
    EXPECT_EQ(all.status, 3);
    EXPECT_THAT(all.out, StartsWith(smallLine));
    EXPECT_THAT(all.out,
                ::testing::EndsWith("5 files: 2 lossless, 1 different, 1 refused, 1 unreadable\n"));
    EXPECT_THAT(all.err, HasSubstr("corvid: gone.mxf: can't open: "));
    EXPECT_THAT(all.err, HasSubstr("corvid: text.mxf: "));

    EXPECT_EQ(shop.run("corvid check clip.mxf odd.mxf").status, 0);
    EXPECT_EQ(shop.run("corvid check text.mxf clip.mxf").status, 1);
    EXPECT_EQ(shop.run("corvid check text.mxf gone.mxf clip.mxf").status, 3);
}

TEST_F(Check, refusesMetadataWithoutPreface) {
    const Bytes metadata = join({standardPrimer(), set(structuralKey(contentStorageSet), 2)});
    shop.write("bare.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const Outcome outcome = shop.run("corvid check bare.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("corvid: bare.mxf: the partition has no Preface"));
    EXPECT_THAT(outcome.out, IsEmpty());
}

TEST_F(Check, commandLinesThatCantBeMeantCheckNothing) {
    for (const char* line : {"corvid check", "corvid check --partition 1.5 clip.mxf"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.out, IsEmpty());
    }
    const Outcome outcome = shop.run("corvid check --dictionary gone.dict clip.mxf");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.out, IsEmpty());
}

TEST_F(Check, listsTwentyOfAKindUnlessAskedForAll) {
    writeTrap(25);
    const auto lines = [](const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    };
    const std::string some = shop.run("corvid check trap.mxf").out;
    EXPECT_THAT(some, HasSubstr("! labelVersion (25): "));
    EXPECT_THAT(some, HasSubstr("      and 5 more\n"));
    EXPECT_EQ(lines(some), 1 + 22);
    const std::string all = shop.run("corvid check --all trap.mxf").out;
    EXPECT_THAT(all, Not(HasSubstr("more")));
    EXPECT_EQ(lines(all), 1 + 26);
    EXPECT_EQ(json("trap.mxf", 1)["files"][0]["differences"].size(), 25U);
}

TEST_F(Check, printsJson) {
    writeTrap();
    const auto report = json("gone.mxf", 3);
    EXPECT_EQ(report["summary"],
              nlohmann::json::parse(R"({"files": 1, "lossless": 0, "cutOff": 0, "different": 0,
                                        "refused": 0, "unreadable": 1, "implied": 0})"));
    const auto files = jsonLines("clip.mxf odd.mxf gone.mxf", 3);
    ASSERT_EQ(files.size(), 3U);
    const auto& clip = files[0];
    EXPECT_EQ(clip, nlohmann::json::parse(R"({"file": "clip.mxf", "result": "lossless", "sets": 2,
        "properties": 5, "counts": {}, "differences": [], "error": null, "cutOffAt": null,
        "warnings": [], "errors": []})"));
    const auto& gone = files[2];
    EXPECT_EQ(gone, report["files"][0]);
    EXPECT_EQ(gone["result"], "unreadable");
    EXPECT_EQ(gone["sets"], nullptr);
    EXPECT_THAT(gone["error"].get<std::string>(), StartsWith("can't open: "));
    EXPECT_EQ(gone["errors"],
              nlohmann::json::array({{{"text", gone["error"]}, {"byte", nullptr}}}));

    const auto trap = json("trap.mxf", 1)["files"][0];
    EXPECT_EQ(trap["result"], "different");
    EXPECT_EQ(trap["counts"], nlohmann::json::parse(R"({"labelVersion": 1})"));
    ASSERT_EQ(trap["differences"].size(), 1U);
    const auto& difference = trap["differences"][0];
    EXPECT_EQ(difference["kind"], "labelVersion");
    EXPECT_EQ(difference["weight"], "real");
    EXPECT_EQ(difference["set"], "TimelineTrack");
    EXPECT_EQ(difference["property"], "TrackName");
    EXPECT_EQ(difference["identifiers"], "both");
}

/// How a program that reads the whole report and prints it again lays it out.
std::string laidOut(const std::string& report) {
    return nlohmann::ordered_json::parse(report).dump(2) + "\n";
}

TEST_F(Check, laysItsReportOutAsAWhole) {
    writeTrap(2);
    for (const char* files : {"clip.mxf", "text.mxf", "trap.mxf"}) {
        const std::string report = shop.run("corvid check --json " + std::string(files)).out;
        EXPECT_EQ(report, laidOut(report));
        EXPECT_THAT(report, Not(HasSubstr("leftOut")));
    }
}

TEST_F(Check, listsAThousandOfAKindInJsonUnlessAskedForAll) {
    writeTrap(1003);
    const auto file = json("trap.mxf", 1)["files"][0];
    EXPECT_EQ(file["counts"], nlohmann::json::parse(R"({"labelVersion": 1003})"));
    EXPECT_EQ(file["differences"].size(), 1000U);
    EXPECT_EQ(file["leftOut"], 3);
    const auto all = json("--all trap.mxf", 1)["files"][0];
    EXPECT_EQ(all["differences"].size(), 1003U);
    EXPECT_FALSE(all.contains("leftOut"));
}

TEST_F(Check, isNotContentWithAClipThatIsCutOff) {
    Bytes bytes = MxfBuilder().add(headerPartition()).build();
    bytes.resize(bytes.size() - 3);
    shop.write("cut.mxf", bytes);
    const std::string at =
        std::to_string(bytes.size() + 3 - set(structuralKey(contentStorageSet), 2).size());
    const Outcome outcome = shop.run("corvid check cut.mxf clip.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "cut.mxf: lossless in what could be read: the metadata is cut off at "
                           "byte " +
                               at + " (1 set, 4 properties)\n" + smallLine +
                               "2 files: 1 lossless, 1 lossless in what could be read\n");
    const auto report = json("cut.mxf", 1);
    EXPECT_EQ(report["summary"]["cutOff"], 1);
    const auto& file = report["files"][0];
    EXPECT_EQ(file["result"], "cutOff");
    EXPECT_EQ(file["error"], nullptr);
    EXPECT_EQ(file["cutOffAt"], std::stoul(at));
    EXPECT_EQ(file["errors"],
              nlohmann::json::array({{{"text", "the metadata is cut off at byte " + at},
                                      {"byte", file["cutOffAt"]}}}));
}

TEST_F(Check, listsTheWarningsOfEachFileInJson) {
    shop.write("nameless.mxf", clipWithANamelessSet());
    const auto files = jsonLines("nameless.mxf clip.mxf", 0);
    ASSERT_EQ(files.size(), 2U);
    const auto& warnings = files[0]["warnings"];
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_EQ(warnings[0]["code"], "no-instance-uid");
    EXPECT_EQ(warnings[0]["text"], "has no InstanceUID, so no reference leads to it");
    EXPECT_EQ(warnings[0]["count"], 1);
    EXPECT_EQ(warnings[0]["first"]["set"], "TimelineTrack");
    EXPECT_GT(warnings[0]["first"]["byte"], 0);
    EXPECT_EQ(warnings[0]["first"]["property"], nullptr);
    EXPECT_EQ(files[1]["warnings"], nlohmann::json::array());
    EXPECT_EQ(json("nameless.mxf", 0)["files"][0]["warnings"], warnings);
}

TEST_F(Check, showsProgressAndColoursOnATerminalOnly) {
    if (shop.run("command -v script").status != 0) {
        GTEST_SKIP() << "no script(1) to make a terminal";
    }
    const auto onTerminal = [&](const std::string& line) {
        return shop.run("TERM=xterm script -qec '" + line + "' /dev/null </dev/null").out;
    };
    const std::string two = onTerminal("corvid check clip.mxf text.mxf");
    EXPECT_THAT(two, HasSubstr("[....................] 0 of 2  clip.mxf\r\033[K"));
    EXPECT_THAT(two, HasSubstr("\033[32mlossless\033[0m"));
    EXPECT_THAT(onTerminal("corvid check clip.mxf"), Not(HasSubstr("of 1")));
    EXPECT_THAT(onTerminal("corvid check clip.mxf odd.mxf 2>&1 | cat"), Not(HasSubstr("\033")));
    EXPECT_THAT(onTerminal("corvid check --json clip.mxf text.mxf 2>/dev/null"),
                Not(HasSubstr("\033")));
    EXPECT_THAT(onTerminal("TERM=dumb corvid check clip.mxf odd.mxf"), Not(HasSubstr("\033")));
}

TEST_F(Check, findsNoDamageInRealFiles) {
    const auto samples = samplesDir();
    if (samples.empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    const auto files = jsonLines("'" + samples.string() + "'/*.mxf", 0);
    EXPECT_GT(files.size(), 20U);
    for (const auto& file : files) {
        EXPECT_EQ(file["result"], "lossless") << file.dump(2);
    }
}

TEST_F(Check, wouldFindNoDamageInWhatFromXmlWrites) {
    std::vector<std::filesystem::path> files{sourceDir() / "examples" / "sample.mxf"};
    if (const auto samples = samplesDir(); !samples.empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(samples)) {
            if (entry.path().extension() == ".mxf") {
                files.push_back(entry.path());
            }
        }
    }
    mxf::NoWarnings warnings;
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    for (const auto& path : files) {
        const Outcome outcome = shop.run("corvid to-xml --replace-invalid '" + path.string() +
                                         "' -o t.xml && corvid from-xml t.xml -o t.mxf");
        ASSERT_EQ(outcome.status, 0) << path << outcome.err;
        mxf::File before(path.string(), dictionary, warnings);
        mxf::File after((shop.path() / "t.mxf").string(), dictionary, warnings);
        const auto differences =
            differencesOf(*before.readMetadata().metadata, *after.readMetadata().metadata);
        EXPECT_THAT(differences, IsEmpty()) << path << "\n" << linesOf(differences);
    }
}

} // namespace
