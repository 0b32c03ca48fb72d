#include "tests/support/Sanitizers.h"
#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

using namespace Corvid::Testing;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class ManyFiles : public ::testing::Test {
protected:
    ManyFiles() {
        shop.run("mkdir -p in/sub in/empty");
        for (const char* name : {"in/b.mxf", "in/a.MXF", "in/sub/c.mxf", "in/a-z.mxf"}) {
            shop.write(name, smallClip());
        }
        shop.write("in/bad.mxf", std::string("no MXF file"));
        shop.write("in/notes.txt", std::string("no clip"));
        shop.write("in/.corvid-1-1.mxf", smallClip());
    }

    /// The names that a line prints, which ends each with a line break.
    std::vector<std::string> names(const std::string& line) const {
        std::istringstream out(shop.run(line).out);
        std::vector<std::string> names;
        for (std::string name; std::getline(out, name);) {
            names.push_back(name);
        }
        return names;
    }

    std::vector<nlohmann::json> log(const std::string& name = "log") const {
        std::istringstream text(shop.read(name));
        std::vector<nlohmann::json> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(nlohmann::json::parse(line));
        }
        return lines;
    }

    Workshop shop;
};

const std::string file = "corvid get -q @file ";

TEST_F(ManyFiles, findsTheClipsOfFoldersInTheOrderOfTheirBytes) {
    EXPECT_THAT(names(file + "--recursive in 2>/dev/null"),
                ElementsAre("in/a-z.mxf", "in/a.MXF", "in/b.mxf", "in/sub/c.mxf"));
    EXPECT_THAT(names(file + "in/b.mxf --recursive in/sub/ in/b.mxf ./in//b.mxf"),
                ElementsAre("in/b.mxf", "in/sub/c.mxf"));
}

TEST_F(ManyFiles, doesNotFollowLinksToFoldersButLinksToFiles) {
    shop.run("ln -s .. in/sub/up; ln -s ../b.mxf in/sub/link.mxf; ln -s gone in/sub/lost.mxf; "
             "mkfifo in/sub/pipe.mxf");
    const Outcome outcome = shop.run(file + "--recursive in/sub");
    EXPECT_EQ(outcome.out, "in/sub/c.mxf\nin/sub/link.mxf\n");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("corvid: in/sub/lost.mxf: can't open: "));
    EXPECT_THAT(names(file + "--recursive in/sub/up/sub 2>/dev/null"),
                ElementsAre("in/sub/up/sub/c.mxf", "in/sub/up/sub/link.mxf"))
        << "a link that is named is followed";
}

TEST_F(ManyFiles, aFolderWithoutRecursiveIsAnError) {
    const Outcome outcome = shop.run("corvid info in/b.mxf in");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("corvid: in: "));
}

TEST_F(ManyFiles, readsListsOfNames) {
    const auto wanted = ElementsAre("in/b.mxf", "in/a.MXF");
    shop.write("list", std::string("in/b.mxf\n\nin/a.MXF\nin/b.mxf"));
    shop.write("zeros", std::string("in/b.mxf\0in/a.MXF\0", 18));
    EXPECT_THAT(names(file + "--files-from list"), wanted);
    EXPECT_THAT(names(file + "--files-from - <list"), wanted);
    EXPECT_THAT(names("cat list | " + file + "--files-from -"), wanted);
    EXPECT_THAT(names(file + "in/b.mxf --files-from list"), wanted);
    EXPECT_EQ(shop.run(file + "-0 --files-from zeros").out,
              std::string("in/b.mxf\0in/a.MXF\0", 18));
    EXPECT_EQ(shop.run("corvid check -0 --files-from zeros").status, 0);
    EXPECT_THAT(names("echo in/sub | " + file + "--recursive --files-from -"),
                ElementsAre("in/sub/c.mxf"));
}

TEST_F(ManyFiles, answersAPipeThatStaysOpen) {
    shop.run("mkfifo questions");
    const Outcome outcome = shop.run(
        "{ " + file +
        "--files-from questions >answers & } && exec 3>questions && echo in/b.mxf >&3 && "
        "for i in $(seq 200); do [ -s answers ] && break; sleep 0.05; done; cp answers early; "
        "exec 3>&-; wait");
    EXPECT_EQ(shop.read("early"), "in/b.mxf\n") << outcome.err;
}

TEST_F(ManyFiles, partsOfAllFilesAreAllFiles) {
    const auto all = names(file + "--recursive in 2>/dev/null");
    std::vector<std::string> parts;
    for (const char* shard : {"1/3", "2/3", "3/3"}) {
        for (const auto& each :
             names(file + "--recursive in 2>/dev/null --shard " + std::string(shard))) {
            parts.push_back(each);
        }
    }
    EXPECT_THAT(parts, ::testing::UnorderedElementsAreArray(all));
    shop.write("a", smallClip());
    EXPECT_THAT(names(file + "--shard 1/2 a"), ElementsAre("a")) << "af63dc4c8601ec8c is even";
    EXPECT_THAT(names(file + "--shard 2/2 a"), IsEmpty());
}

struct Wrong {
    const char* name;
    const char* line;
    const char* err;
};
void PrintTo(const Wrong& each, std::ostream* out) { *out << each.line; }

class ManyFilesRefuse : public ManyFiles, public ::testing::WithParamInterface<Wrong> {};

TEST_P(ManyFilesRefuse, aWrongCommandLine) {
    shop.write("list", std::string("in/b.mxf\n../x.mxf\n"));
    shop.write("zeros", std::string("in/b.mxf\0in/a.MXF\0", 18));
    shop.write("mine", std::string("not a log"));
    const Outcome outcome = shop.run(GetParam().line);
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().err));
    EXPECT_FALSE(shop.has("out"));
    EXPECT_EQ(shop.read("mine"), "not a log");
}

INSTANTIATE_TEST_SUITE_P(
    , ManyFilesRefuse,
    ::testing::Values(
        Wrong{"NoFile", "corvid info", "CLIP.mxf is required"},
        Wrong{"SeveralDocuments", "corvid to-xml in/a.MXF in/b.mxf",
              "several documents need --output-dir"},
        Wrong{"SeveralReports", "corvid report --recursive in",
              "several documents need --output-dir"},
        Wrong{"OutputOfSeveral", "corvid to-xml in/a.MXF in/b.mxf -o out",
              "-o is for one file; --output-dir is for several"},
        Wrong{"UpwardsInAName", "corvid to-xml in/b.mxf in/../x.mxf --output-dir out",
              "in/../x.mxf: '..' would lead out of out"},
        Wrong{"UpwardsInAList", "corvid to-xml --files-from list --output-dir out",
              "../x.mxf: '..' would lead out of out"},
        Wrong{"StandardInputInAFolder", "corvid info - --output-dir out",
              "standard input has no name in out"},
        Wrong{"StandardInputTwice", "corvid info - --files-from -",
              "standard input can't be both a file and the list of files"},
        Wrong{"ZerosInAList", "corvid info --files-from zeros", "has zeros; -0 reads such a list"},
        Wrong{"ResumeWithoutLog", "corvid info --resume in/b.mxf", "--resume needs --log"},
        Wrong{"LogThatIsNone", "corvid info --log mine in/b.mxf",
              "mine: a file is there that is not a log of corvid"},
        Wrong{"LogThatIsAFolder", "corvid info --log in in/b.mxf", "in: a log has to be a file"},
        Wrong{"ShardOfNothing", "corvid info --shard 0/3 in/b.mxf",
              "expected two numbers such as 1/4, not '0/3'"},
        Wrong{"ShardBeyond", "corvid info --shard 4/3 in/b.mxf", "--shard"},
        Wrong{"ShardWithoutNumber", "corvid info --shard 1/ in/b.mxf", "--shard"},
        Wrong{"NoJobs", "corvid info --jobs 0 in/b.mxf", "--jobs"},
        Wrong{"EmptyFolder", "corvid info --output-dir '' in/b.mxf",
              "--output-dir: expected a name"},
        Wrong{"EmptyLog", "corvid info --log '' in/b.mxf", "--log: expected a name"},
        Wrong{"EmptyList", "corvid info --files-from '' in/b.mxf", "--files-from: expected a name"},
        Wrong{"DiffOfThree", "corvid diff in/a.MXF in/b.mxf in/sub/c.mxf",
              "--against is required"}),
    [](const auto& each) { return std::string(each.param.name); });

struct Verb {
    const char* name;
    const char* verb;
    const char* suffix;
    int status = 1;
};
void PrintTo(const Verb& each, std::ostream* out) { *out << each.verb; }

class EveryReadingVerb : public ManyFiles, public ::testing::WithParamInterface<Verb> {};

/// What it writes of many files, at once and in several processes, is what it writes of each.
TEST_P(EveryReadingVerb, writesTheResultOfEachFileIntoAFolder) {
    const std::string verb = std::string("corvid ") + GetParam().verb + " ";
    const std::string suffix = GetParam().suffix;
    shop.run("corvid to-xml --recursive in --output-dir documents");
    const Outcome outcome =
        shop.run(verb + "--recursive ./in --output-dir out/put --jobs 3 --log log");
    EXPECT_EQ(outcome.status, GetParam().status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("corvid: 5 files: 4 ok, 1 "));
    for (const char* name : {"in/a-z.mxf", "in/a.MXF", "in/b.mxf", "in/sub/c.mxf"}) {
        EXPECT_NE(shop.read("out/put/" + (name + suffix)), "") << name;
    }
    EXPECT_EQ(names("find out -type f -name '*" + suffix + "' | grep -v bad").size(), 4U);
    EXPECT_THAT(names("find out -name '.*'"), IsEmpty());
    const auto lines = log();
    ASSERT_EQ(lines.size(), 5U);
    for (const auto& line : lines) {
        const bool isBad = line["path"] == "./in/bad.mxf";
        EXPECT_EQ(line["status"] == "ok", !isBad);
        EXPECT_EQ(
            line["output"],
            isBad && !shop.has("out/put/in/bad.mxf" + suffix)
                ? nlohmann::json()
                : nlohmann::json("out/put/" + line["path"].get<std::string>().substr(2) + suffix));
        EXPECT_GT(line["bytesRead"], 0);
    }
    const Outcome again =
        shop.run(verb + "--recursive ./in --output-dir out/put --log log --resume");
    EXPECT_THAT(again.err, HasSubstr("done before"));
    EXPECT_EQ(again.status, GetParam().status) << "what was refused stays refused";
}

INSTANTIATE_TEST_SUITE_P(
    , EveryReadingVerb,
    ::testing::Values(Verb{"Info", "info", ".txt"}, Verb{"InfoInJson", "info --json", ".json"},
                      Verb{"ToXml", "to-xml", ".xml"}, Verb{"ToJson", "to-json", ".json"},
                      Verb{"Check", "check", ".txt"}, Verb{"Get", "get -q @file", ".txt"},
                      Verb{"Report", "report", ".html"},
                      Verb{"GetCsv", "get --csv -q @file", ".csv"},
                      Verb{"CheckInJson", "check --json", ".json"},
                      Verb{"Diff", "diff --against documents", ".txt", 3}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(ManyFiles, aDocumentOfManyIsTheDocumentOfOne) {
    shop.run("corvid to-xml --recursive in --output-dir out --jobs 2");
    shop.run("corvid to-xml in/sub/c.mxf -o one.xml");
    EXPECT_EQ(shop.read("out/in/sub/c.mxf.xml"), shop.read("one.xml"));
    shop.run("corvid to-json --recursive in --output-dir out");
    shop.run("corvid to-json in/sub/c.mxf -o one.json");
    EXPECT_EQ(shop.read("out/in/sub/c.mxf.json"), shop.read("one.json"));
    shop.run("corvid get --csv -q @file --recursive in --output-dir out");
    EXPECT_EQ(shop.read("out/in/sub/c.mxf.csv"), "@file\r\nin/sub/c.mxf\r\n");
}

TEST_F(ManyFiles, printsResultsInTheOrderOfTheFilesWhateverIsDoneFirst) {
    shop.run("for i in $(seq 300); do ln in/b.mxf in/$i.mxf; done");
    const auto one = names(file + "--recursive in 2>/dev/null");
    EXPECT_EQ(one.size(), 304U);
    EXPECT_EQ(names(file + "--recursive in --jobs 4 2>/dev/null"), one);
    const Outcome both = shop.run("corvid to-json --recursive in --jobs 4 2>&1 >lines");
    EXPECT_THAT(both.err + both.out, HasSubstr("304 ok"));
    EXPECT_EQ(names("jq -r .file lines 2>/dev/null || sed 's/.*\"file\":\"//;s/\".*//' lines"),
              one);
}

TEST_F(ManyFiles, resultsThatAreKeptInAFileAreWhole) {
    shop.run("cp '" + (sourceDir() / "examples" / "sample.mxf").string() + "' in/b.mxf");
    const auto plain = shop.run("for i in 1 2 3; do corvid to-json --compact in/b.mxf; done");
    const auto many = shop.run("ln in/b.mxf in/b2.mxf; ln in/b.mxf in/b3.mxf; corvid to-json "
                               "in/b.mxf in/b2.mxf in/b3.mxf | sed 's/b[23].mxf/b.mxf/'");
    EXPECT_EQ(many.out, plain.out);
}

TEST_F(ManyFiles, whereTwoResultsWouldBeOneTheSecondIsAnError) {
    const std::string path = shop.path().string();
    const Outcome outcome = shop.run("corvid to-xml '" + path + "/in/b.mxf' '" + path.substr(1) +
                                     "/in/b.mxf' --output-dir out");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("its result would replace that of " + path));
    EXPECT_TRUE(shop.has("out" + path + "/in/b.mxf.xml"));
}

TEST_F(ManyFiles, passesTheOutputFolderOver) {
    shop.run("mkdir in/out; cp in/b.mxf in/out/old.mxf");
    EXPECT_THAT(names("corvid info --recursive in --output-dir in/out --log log 2>/dev/null; "
                      "grep -c old.mxf log"),
                ElementsAre("0"));
}

TEST_F(ManyFiles, aBadFileStopsNothingAndTheWorstStatusCounts) {
    EXPECT_EQ(shop.run("corvid info in/b.mxf in/a.MXF --jobs 2").status, 0);
    EXPECT_EQ(shop.run("corvid info in/bad.mxf in/a.MXF --jobs 2").status, 1);
    const Outcome outcome = shop.run("corvid info gone.mxf in/bad.mxf in/a.MXF");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, EndsWith("corvid: 3 files: 1 ok, 1 refused, 1 unreadable\n"
                                      "corvid:   gone.mxf: unreadable\n"
                                      "corvid:   in/bad.mxf: refused\n"));
}

TEST_F(ManyFiles, differsWithTheDocumentsOfAFolder) {
    shop.run("corvid to-xml --recursive in --output-dir out");
    shop.write("in/b.mxf", clipWithCompany(u"other"));
    const Outcome outcome =
        shop.run("corvid diff --against out in/a.MXF in/b.mxf in/sub/c.mxf --log log");
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("in/a.MXF: no difference\nin/b.mxf:\n"));
    EXPECT_THAT(outcome.out, EndsWith("in/sub/c.mxf: no difference\n"));
    EXPECT_EQ(log()[1]["status"], "different");
    EXPECT_EQ(shop.run("corvid diff --against in/sub/.. in/sub/c.mxf").status, 3);
    EXPECT_EQ(shop.run("(cd in/sub && corvid diff --against ../../in/sub c.mxf)").status, 0);
}

TEST_F(ManyFiles, takesAFolderForAFileWhereverItStands) {
    for (const char* line :
         {"corvid get -q @file . in/b.mxf", "corvid get -q @file ./ ././ in/b.mxf",
          "printf '.\nin/b.mxf\n' | corvid get -q @file --files-from -"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.out, "in/b.mxf\n") << line;
        EXPECT_EQ(outcome.status, 3) << line;
    }
}

TEST_F(ManyFiles, standardInputIsNoFileOfThatName) {
    shop.run("cp in/b.mxf ./-");
    EXPECT_EQ(shop.run(file + "- ./- <in/a.MXF").out, "standard input\n./-\n");
}

TEST_F(ManyFiles, standardInputHasNoPlaceInAList) {
    const Outcome outcome =
        shop.run("(printf 'in/b.mxf\n-\n'; sleep 0.3; echo in/a.MXF) | " + file + "--files-from -");
    EXPECT_EQ(outcome.out, "in/b.mxf\nin/a.MXF\n");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("standard input can't be both a file and the list"));
}

TEST_F(ManyFiles, aNameThatCanNotBeMeantStopsNoneOfThoseBehindIt) {
    const Outcome outcome = shop.run(
        "printf '../in/b.mxf\nin/b.mxf\n' | corvid to-json --output-dir out --files-from -");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("'..' would lead out of out"));
    EXPECT_TRUE(shop.has("out/in/b.mxf.json"));
}

TEST_F(ManyFiles, whatEndsTheWorkLetsWhatWasBegunBeDone) {
    const Outcome outcome = shop.run("(echo in/b.mxf; head -c 70000 /dev/zero | tr '\\0' x) | "
                                     "corvid to-json --output-dir out --log log --files-from -");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("has a name of more than 65536 bytes"));
    EXPECT_THAT(outcome.err, HasSubstr("ended early; all files that were begun are done"));
    EXPECT_TRUE(shop.has("out/in/b.mxf.json"));
    EXPECT_EQ(log().size(), 1);
}

TEST_F(ManyFiles, whereTheSystemGivesNoMoreProcessesThoseAtWorkDoAll) {
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
    GTEST_SKIP() << "a sanitizer needs files of its own";
#endif
    shop.run("for i in $(seq 30); do cp in/b.mxf in/sub/$i.mxf; done");
    const Outcome outcome =
        shop.run("ulimit -n 24; corvid to-json --recursive in/sub --output-dir out --jobs 40");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(names("ls out/in/sub").size(), 31);
}

TEST_F(ManyFiles, resultsMayGoIntoTheFolderThatIsRead) {
    EXPECT_EQ(shop.run("cd in/sub && corvid to-json --recursive . --output-dir .").status, 0);
    EXPECT_TRUE(shop.has("in/sub/c.mxf.json"));
}

TEST_F(ManyFiles, aFolderThatMayNotBeLookedIntoIsMissedWithAWord) {
    shop.run("chmod 744 in/sub; chmod 777 in .");
    const Outcome outcome =
        shop.run("setpriv --reuid 65534 --clear-groups " + file + "--recursive in");
    shop.run("chmod 755 in/sub");
    if (outcome.status == 127 || outcome.err.find("setpriv") != std::string::npos) {
        GTEST_SKIP() << "only root takes another user";
    }
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("in/sub/"));
}

TEST_F(ManyFiles, partsAreTheSameHoweverAPathIsWritten) {
    shop.write("list", std::string("in/b.mxf\n./in//b.mxf\n"));
    const std::string line = file + "--files-from list --shard ";
    EXPECT_EQ(shop.run(line + "1/2").out + shop.run(line + "2/2").out, "in/b.mxf\n");
}

TEST_F(ManyFiles, resumeDoesWhatHasNoResultInTheFolder) {
    shop.run("corvid to-json --log log in/b.mxf");
    EXPECT_EQ(shop.run("corvid to-json --log log --resume --output-dir out in/b.mxf").status, 0);
    EXPECT_TRUE(shop.has("out/in/b.mxf.json"));
}

TEST_F(ManyFiles, resumeLeavesOutWhatHadNoResult) {
    const std::string line = "corvid get -q @file --if @codec=none in/b.mxf in/a.MXF "
                             "--output-dir out --log log ";
    EXPECT_EQ(shop.run(line).status, 0);
    EXPECT_FALSE(shop.has("out/in/b.mxf.txt"));
    EXPECT_EQ(shop.run(line + "--resume").err, "corvid: 0 files; 2 done before\n");
}

TEST_F(ManyFiles, resumeComparesAgainWhereTheOtherFileHasChanged) {
    shop.run("mkdir -p old/in; cp in/b.mxf old/in");
    const std::string line = "corvid diff --against old --log log --resume in/b.mxf";
    EXPECT_EQ(shop.run(line).status, 0);
    shop.write("old/in/b.mxf", clipWithCompany(u"other"));
    EXPECT_EQ(shop.run(line).status, 1);
}

TEST_F(ManyFiles, aLogIsNeitherAResultNorRead) {
    shop.run("mkdir -p out/in; : >empty.mxf");
    const Outcome outcome =
        shop.run("corvid to-json --output-dir out --log out/in/b.mxf.json in/b.mxf in/a.MXF");
    EXPECT_NE(outcome.status, 0);
    EXPECT_THAT(shop.read("out/in/b.mxf.json"), HasSubstr("\"verb\":\"to-json\""));
    EXPECT_EQ(shop.run(file + "--log empty.mxf empty.mxf in/b.mxf").status, 2);
    EXPECT_EQ(shop.read("empty.mxf"), "");
}

TEST_F(ManyFiles, aProcessThatCrashesIsAStatusAndTheNextFileFollows) {
    shop.run("mkfifo in/b-pipe.mxf");
    const Outcome outcome = shop.run(
        "corvid get -q @file in/a.MXF in/b-pipe.mxf in/b.mxf --log log & pid=$!; "
        "for i in $(seq 200); do grep -q a.MXF log 2>/dev/null && break; sleep 0.05; done; "
        "kill -KILL $(cat /proc/$pid/task/$pid/children); wait $pid");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "in/a.MXF\nin/b.mxf\n");
    EXPECT_THAT(outcome.err,
                HasSubstr("corvid: in/b-pipe.mxf: the process crashed: signal 9 (Killed)\n"));
    EXPECT_THAT(outcome.err, HasSubstr("3 files: 2 ok, 1 crashed"));
    EXPECT_EQ(log()[1]["status"], "crashed");
}

TEST_F(ManyFiles, aFileThatNeedsMoreMemoryThanAllowedIsACrash) {
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
    GTEST_SKIP() << "the sanitizer itself takes more";
#endif
    constexpr std::size_t much = 16'000'000;
    shop.write("big.mxf",
               MxfBuilder()
                   .add(headerPartition(join(
                       {smallMetadata(), klv(hex("06.0e.2b.34.02.53.01.01.0f.0f.0f.0f.0f.0f.0f.00"),
                                             Bytes(much, 0xFF))})))
                   .build());
    for (const char* verb : {"info", "check"}) {
        const std::string line =
            std::string("corvid ") + verb + " big.mxf in/b.mxf --memory-per-job ";
        const Outcome outcome = shop.run(line + "30");
        EXPECT_EQ(outcome.status, 3);
        const std::string once = "corvid: big.mxf: not enough memory\n";
        EXPECT_THAT(outcome.err, HasSubstr(once + "corvid: 2 files: 1 ok, 1 crashed\n"));
        EXPECT_THAT(outcome.err, Not(HasSubstr(once + once)));
        EXPECT_EQ(shop.run(line + "4000").status, 0);
    }
}

} // namespace
