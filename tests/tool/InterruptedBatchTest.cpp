#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

constexpr int clips = 150;

/// What ends the work on many files before it is done.
class InterruptedBatch : public ::testing::Test {
protected:
    InterruptedBatch() {
        shop.run("mkdir in && cp '" + (sourceDir() / "examples" / "sample.mxf").string() +
                 "' in/1.mxf && for i in $(seq 2 " + std::to_string(clips) +
                 "); do ln in/1.mxf in/$i.mxf; done; "
                 "corvid to-xml in/1.mxf -o wanted.xml");
        wanted = shop.read("wanted.xml");
    }

    /// The documents in the folder, of which none is there in part.
    int documents() const {
        int count = 0;
        std::error_code none;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(shop.path() / "out", none)) {
            if (entry.path().extension() == ".xml") {
                ++count;
                EXPECT_EQ(shop.read(std::filesystem::relative(entry.path(), shop.path()).string()),
                          wanted)
                    << entry.path();
            }
        }
        return count;
    }

    /// The paths of the log that are done. Each of them has its document.
    std::set<std::string> done() const {
        std::set<std::string> paths;
        std::istringstream text(shop.read("log"));
        for (std::string each; std::getline(text, each) && !text.eof();) {
            if (each.front() != '{') {
                continue; // zeros, as a power failure leaves them
            }
            const auto json = nlohmann::json::parse(each);
            if (json["status"] == "ok") {
                paths.insert(json["path"].get<std::string>());
                EXPECT_TRUE(shop.has(json["output"].get<std::string>())) << each;
            }
        }
        return paths;
    }

    const std::string line = "corvid to-xml --recursive in --output-dir out --log log --jobs 2 ";
    Workshop shop;
    std::string wanted;
};

/// After each kill, what is there is whole; in the end nothing is missing.
TEST_F(InterruptedBatch, resumesAfterKillsAtManyMoments) {
    std::size_t before = 0;
    int kills = 0;
    for (int moment = 1; kills < 40; ++moment) {
        const Outcome outcome =
            shop.run("timeout --foreground -s KILL 0." + std::string(moment % 9 < 4 ? "0" : "") +
                     std::to_string(moment % 9 + 1) + " " + line + "--resume");
        if (outcome.status != 137 && outcome.status != 124) {
            break; // done before it was killed
        }
        ++kills;
        const auto now = done();
        EXPECT_GE(now.size(), before);
        EXPECT_GE(documents(), static_cast<int>(now.size()));
        before = now.size();
    }
    EXPECT_GT(kills, 0);
    const Outcome last = shop.run(line + "--resume");
    EXPECT_EQ(last.status, 0) << last.err;
    EXPECT_EQ(done().size(), static_cast<std::size_t>(clips));
    EXPECT_EQ(documents(), clips);
}

TEST_F(InterruptedBatch, resumesAfterItsProcessesWereKilled) {
    const Outcome outcome = shop.run(
        line + "& pid=$!; for i in 1 2 3 4 5 6; do sleep 0.03; for child in $(cat "
               "/proc/$pid/task/$pid/children 2>/dev/null); do kill -KILL $child; done; done; "
               "wait $pid");
    const std::size_t crashed = static_cast<std::size_t>(clips) - done().size();
    EXPECT_EQ(outcome.status, crashed == 0 ? 0 : 3);
    EXPECT_GE(static_cast<std::size_t>(documents()), done().size());
    const Outcome last = shop.run(line + "--resume");
    EXPECT_EQ(last.status, 0) << last.err;
    EXPECT_EQ(done().size(), static_cast<std::size_t>(clips));
    EXPECT_EQ(documents(), clips);
}

/// A signal lets the files at work be done; the next command does the others.
TEST_F(InterruptedBatch, endsInGoodOrderOnASignal) {
    for (const auto& [name, status] : {std::pair("INT", 130), std::pair("TERM", 143)}) {
        shop.run("rm -rf out log");
        const Outcome outcome = shop.run("timeout --foreground --preserve-status -s " +
                                         std::string(name) + " 0.1 " + line);
        EXPECT_EQ(outcome.status, status);
        EXPECT_THAT(outcome.err, HasSubstr("corvid: ended early by a signal"));
        const auto now = done();
        EXPECT_GT(now.size(), 0U);
        EXPECT_EQ(documents(), static_cast<int>(now.size()));
        EXPECT_EQ(shop.run(line + "--resume").status, 0);
        EXPECT_EQ(documents(), clips);
    }
}

TEST_F(InterruptedBatch, endsByTheSignalAfterASummary) {
    // The pipe keeps a process at work until somebody writes into it.
    const Outcome outcome = shop.run(
        "mkfifo pipe.mxf; corvid get -q @file in/1.mxf pipe.mxf in/2.mxf --log log & pid=$!; "
        "for i in $(seq 200); do grep -q ok log 2>/dev/null && break; sleep 0.05; done; "
        "kill -TERM $pid; sleep 0.2; cat in/1.mxf >pipe.mxf; wait $pid");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_EQ(outcome.out, "in/1.mxf\npipe.mxf\n");
    EXPECT_THAT(outcome.err,
                HasSubstr("corvid: ended early by a signal; all files that were begun are done\n"
                          "corvid: 2 files: 2 ok\n"));
}

TEST_F(InterruptedBatch, endsAtOnceOnASecondSignal) {
    const Outcome outcome =
        shop.run("mkfifo pipe.mxf; corvid get -q @file in/1.mxf pipe.mxf --log log & pid=$!; "
                 "for i in $(seq 200); do grep -q ok log 2>/dev/null && break; sleep 0.05; done; "
                 "child=$(cat /proc/$pid/task/$pid/children); "
                 "kill -TERM $pid; sleep 0.2; kill -TERM $pid; wait $pid; status=$?; sleep 0.3; "
                 "for each in $child; do grep -q '^State:.[^Z]' /proc/$each/status 2>/dev/null && "
                 "echo lives; done; exit $status");
    EXPECT_EQ(outcome.status, 143);
    EXPECT_EQ(outcome.out, "in/1.mxf\n");
    EXPECT_THAT(outcome.err, Not(HasSubstr("files")));
}

struct Tear {
    const char* name;
    const char* line; ///< what happens to the log and what it is about
    int again;        ///< how many files are done again
};
void PrintTo(const Tear& each, std::ostream* out) { *out << each.line; }

class ResumedBatch : public InterruptedBatch, public ::testing::WithParamInterface<Tear> {};

TEST_P(ResumedBatch, doesAgainWhatIsNotDone) {
    shop.run("rm in/???.mxf in/??.mxf");
    ASSERT_EQ(shop.run(line).status, 0);
    shop.run(GetParam().line);
    const Outcome outcome =
        shop.run("corvid to-xml --recursive in --output-dir out --log log "
                 "--resume " +
                 std::string(GetParam().name == std::string("Options") ? "--structural-only" : ""));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const int again = GetParam().again;
    EXPECT_THAT(outcome.err, ::testing::StartsWith("corvid: " + std::to_string(again) +
                                                   (again == 1 ? " file" : " files")));
    EXPECT_EQ(done().size(), 9U);
    EXPECT_EQ(shop.run("tail -c 1 log | od -An -c").out, "  \\n\n");
}

INSTANTIATE_TEST_SUITE_P(
    , ResumedBatch,
    ::testing::Values(
        Tear{"Nothing", "true", 0}, Tear{"TornLine", "truncate -s -7 log", 1},
        Tear{"LineOfZeros", "head -c 500 /dev/zero >>log; echo >>log", 0},
        Tear{"EmptyLog", ": >log", 9}, Tear{"NoLog", "rm log", 9},
        Tear{"OneTornLine", "head -c 30 log >cut; mv cut log", 9},
        Tear{"ResultLost", "rm out/in/3.mxf.xml", 1},
        Tear{"ResultCut", "truncate -s 99 out/in/3.mxf.xml", 1},
        Tear{"ResultOfAnother", "corvid to-xml --structural-only in/3.mxf --output-dir out", 1},
        Tear{"ResultOfTheSameSize", "sed -i s/Preface/Qreface/ out/in/3.mxf.xml", 1},
        Tear{"LogWithoutStampsOfResults",
             "sed -i 's/\"outputSize\":[0-9]*,\"outputMtimeNs\":[0-9]*,//' log", 9},
        Tear{"OtherTime",
             "cp in/1.mxf x; mv x in/5.mxf; touch -d 1999-01-01 "
             "in/5.mxf",
             1},
        Tear{"Options", "true", 9},
        Tear{"TriedAgain", "sed -n '1s/\"status\":\"ok\"/\"status\":\"crashed\"/p' log >>log", 1}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(InterruptedBatch, aPathThatIsNotUtf8IsFoundAgain) {
    shop.run("mkdir odd && cp in/1.mxf \"odd/$(printf 'a\\377').mxf\"");
    const std::string odd = "corvid info --recursive odd --output-dir out --log log ";
    EXPECT_EQ(shop.run(odd).status, 0);
    EXPECT_THAT(shop.read("log"), HasSubstr("\"pathBytes\":\"b2RkL2H/Lm14Zg==\""));
    EXPECT_THAT(shop.run(odd + "--resume").err, HasSubstr("0 files; 1 done before"));
}

TEST_F(InterruptedBatch, oneCommandAtATimeWritesToALog) {
    const Outcome outcome =
        shop.run("mkfifo pipe.mxf; corvid info pipe.mxf --log log >first & pid=$!; "
                 "for i in $(seq 200); do [ -e log ] && break; sleep 0.05; done; sleep 0.2; "
                 "corvid info in/1.mxf --log log; status=$?; cat in/1.mxf >pipe.mxf; wait $pid; "
                 "exit $status");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("log: another process writes to this log"));
}

TEST_F(InterruptedBatch, aFullDiskEndsItAndResumingDoesTheRest) {
    if (shop.run("[ $(id -u) = 0 ] && mkdir disk && mount -t tmpfs -o size=200k none disk")
            .status != 0) {
        GTEST_SKIP() << "only root mounts a small disk";
    }
    const std::string full =
        "corvid to-xml --recursive in --output-dir disk/out --log log --jobs 2 ";
    const Outcome outcome = shop.run(full);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("No space left on device\n"));
    EXPECT_THAT(outcome.err, HasSubstr("corvid: ended early: the disk is full\n"));
    for (const auto& path : done()) {
        EXPECT_EQ(shop.read("disk/out/" + path + ".xml"), wanted);
    }
    EXPECT_LT(done().size(), 30U);
    EXPECT_GT(done().size(), 0U);
    shop.run("mount -o remount,size=100m disk");
    EXPECT_EQ(shop.run(full + "--resume").status, 0);
    EXPECT_EQ(done().size(), static_cast<std::size_t>(clips));
    shop.run("umount disk");
}

} // namespace
