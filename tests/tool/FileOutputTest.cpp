#include "tools/corvid/output/FileOutput.h"

#include "tests/tool/RunCommand.h"

#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Corvid::Testing;
using Corvid::Tool::FileOutput;
using Corvid::Tool::OutputError;
using Naming = Corvid::Tool::TemporaryFile::Naming;

namespace {

const unsigned char text[] = {'n', 'e', 'w'};

/// Does the work in a process of its own, which has no other way to end well.
/// @return as waitpid() reports it.
template <class Work> int inAChild(const Work& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        work();
        ::_exit(0);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

mode_t permissionsOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

void becomeNobody() {
    constexpr unsigned nobody = 65534;
    if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0) {
        ::_exit(1);
    }
}

bool hasNamelessFiles(const std::filesystem::path& folder) {
    const int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR, 0600);
    return file >= 0 && ::close(file) == 0;
}

class FileOutputBothWays : public ::testing::TestWithParam<Naming> {
protected:
    FileOutput open(const std::string& name) const {
        return FileOutput((shop.path() / name).string(), GetParam());
    }
    void writeNew(const std::string& name) const {
        FileOutput output = open(name);
        output.write(text, sizeof text);
        output.commit();
    }
    void setPermissions(const std::string& name, mode_t permissions) const {
        ASSERT_EQ(::chmod((shop.path() / name).c_str(), permissions), 0);
    }

    Workshop shop;
};

INSTANTIATE_TEST_SUITE_P(, FileOutputBothWays, ::testing::Values(Naming::late, Naming::atOnce),
                         [](const auto& each) {
                             return std::string(each.param == Naming::late ? "Late" : "AtOnce");
                         });

TEST_P(FileOutputBothWays, givesAFileItsNameWhenItIsComplete) {
    FileOutput output = open("out");
    output.write(text, sizeof text);
    const bool isNameless = GetParam() == Naming::late && hasNamelessFiles(shop.path());
    EXPECT_EQ(shop.count(), isNameless ? 0U : 1U);
    EXPECT_FALSE(shop.has("out"));
    output.commit();
    EXPECT_EQ(shop.count(), 1U);
    EXPECT_EQ(shop.read("out"), "new");
}

TEST_P(FileOutputBothWays, leavesNothingOfAFileThatIsGivenUp) {
    shop.write("out", std::string("old"));
    open("out").write(text, sizeof text);
    EXPECT_EQ(shop.count(), 1U);
    EXPECT_EQ(shop.read("out"), "old");
}

TEST_P(FileOutputBothWays, leavesNothingWhereTheNameIsTakenByAFolder) {
    {
        FileOutput output = open("out");
        std::filesystem::create_directory(shop.path() / "out");
        EXPECT_THROW(output.commit(), OutputError);
    }
    EXPECT_EQ(shop.count(), 1U);
}

TEST_P(FileOutputBothWays, writesIntoTheCurrentFolder) {
    EXPECT_EQ(inAChild([this] {
                  if (::chdir(shop.path().c_str()) == 0) {
                      FileOutput output("out", GetParam());
                      output.write(text, sizeof text);
                      output.commit();
                  }
              }),
              0);
    EXPECT_EQ(shop.read("out"), "new");
}

TEST_P(FileOutputBothWays, goesAroundNamesThatAreTaken) {
    EXPECT_EQ(inAChild([this] {
                  for (int i = 1; i != 5; ++i) {
                      shop.write(".corvid-" + std::to_string(::getpid()) + "-" + std::to_string(i),
                                 std::string("other"));
                  }
                  writeNew("out");
              }),
              0);
    EXPECT_EQ(shop.read("out"), "new");
    EXPECT_EQ(shop.count(), 5U);
    EXPECT_EQ(shop.run("cat .corvid-*").out, "otherotherotherother");
}

TEST_P(FileOutputBothWays, givesANewFileThePermissionsOfTheProcess) {
    const mode_t before = ::umask(027);
    writeNew("out");
    ::umask(before);
    EXPECT_EQ(permissionsOf(shop.path() / "out"), 0640U);
}

TEST_P(FileOutputBothWays, keepsThePermissionsOfAFileButNoSetUserBit) {
    shop.write("out", std::string("old"));
    setPermissions("out", 06751);
    writeNew("out");
    EXPECT_EQ(permissionsOf(shop.path() / "out"), 0751U);
}

TEST_P(FileOutputBothWays, keepsTheOwnerOfAFileForRoot) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root gives files away";
    }
    shop.write("out", std::string("old"));
    ASSERT_EQ(::chown((shop.path() / "out").c_str(), 1234, 2345), 0);
    writeNew("out");
    EXPECT_EQ(shop.run("stat -c %u:%g out").out, "1234:2345\n");
}

TEST_P(FileOutputBothWays, givesAnotherGroupNoMoreThanOthersHad) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs two users";
    }
    shop.write("out", std::string("old"));
    setPermissions(".", 0777);
    setPermissions("out", 0672);
    EXPECT_EQ(inAChild([this] {
                  becomeNobody();
                  writeNew("out");
              }),
              0);
    EXPECT_EQ(shop.read("out"), "new");
    EXPECT_EQ(permissionsOf(shop.path() / "out"), 0622U);
}

TEST_P(FileOutputBothWays, refusesAFolderThatMayNotBeWritten) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs two users";
    }
    shop.write("out", std::string("old"));
    setPermissions(".", 0755);
    setPermissions("out", 0666);
    const int status = inAChild([this] {
        becomeNobody();
        try {
            open("out");
        } catch (const OutputError& error) {
            ::_exit(Corvid::Platform::toUtf8(error.message()).find("Permission denied") !=
                            std::string::npos
                        ? 3
                        : 1);
        }
    });
    EXPECT_EQ(WEXITSTATUS(status), 3);
    EXPECT_EQ(shop.read("out"), "old");
}

TEST_P(FileOutputBothWays, leavesTheOldContentToOtherHardLinks) {
    shop.write("out", std::string("old"));
    std::filesystem::create_hard_link(shop.path() / "out", shop.path() / "other");
    writeNew("out");
    EXPECT_EQ(shop.read("out"), "new");
    EXPECT_EQ(shop.read("other"), "old");
}

TEST_P(FileOutputBothWays, leavesNothingWhateverSignalEndsTheProcess) {
    for (const int number :
         {SIGHUP, SIGINT, SIGQUIT, SIGALRM, SIGTERM, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ, SIGVTALRM,
          SIGPROF, SIGIO, SIGSYS, SIGTRAP, int{SIGRTMIN}, int{SIGRTMAX}}) {
        const Workshop place;
        const int status = inAChild([&] {
            std::vector<std::unique_ptr<FileOutput>> outputs;
            for (const char* name : {"first", "second", "third", "fourth"}) {
                outputs.push_back(
                    std::make_unique<FileOutput>((place.path() / name).string(), GetParam()));
                outputs.back()->write(text, sizeof text);
            }
            outputs[1]->commit();
            outputs[2].reset();
            ::raise(number);
        });
        EXPECT_TRUE(WIFSIGNALED(status)) << number;
        EXPECT_EQ(WTERMSIG(status), number);
        EXPECT_EQ(place.read("second"), "new") << number;
        EXPECT_EQ(place.count(), 1U) << number;
    }
}

TEST_P(FileOutputBothWays, leavesIgnoredSignalsIgnored) {
    EXPECT_EQ(inAChild([this] {
                  ::signal(SIGHUP, SIG_IGN);
                  FileOutput output = open("out");
                  ::raise(SIGHUP);
                  output.write(text, sizeof text);
                  output.commit();
              }),
              0);
    EXPECT_EQ(shop.read("out"), "new");
}

// Wherever in the life of its files it is: a hundred times at another moment.
TEST_P(FileOutputBothWays, leavesNothingWheneverASignalComes) {
    constexpr int signals[] = {SIGINT, SIGTERM, SIGUSR1, SIGQUIT};
    for (int i = 0; i != 100; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlimit none{0, 0};
            ::setrlimit(RLIMIT_CORE, &none);
            for (;;) {
                FileOutput first = open("first");
                FileOutput second = open("second");
                first.write(text, sizeof text);
                second.commit();
                first.commit();
            }
        }
        ::usleep(static_cast<useconds_t>(500 + i * 37));
        ::kill(child, signals[i % 4]);
        ::waitpid(child, nullptr, 0);
        const auto made = std::size_t{shop.has("first")} + std::size_t{shop.has("second")};
        ASSERT_EQ(shop.count(), made) << i;
    }
}

TEST_P(FileOutputBothWays, isOnTheDiskBeforeItHasItsName) {
    const Workshop strace;
    if (strace.run("strace -o trace true").status != 0) {
        GTEST_SKIP() << "no strace that may trace";
    }
    shop.write("clip.mxf", smallClip());
    shop.run("strace -e trace=fsync,rename -o trace corvid to-xml clip.mxf -o out.xml; "
             "sed -i 's/(.*//' trace");
    EXPECT_EQ(shop.read("trace").substr(0, 19), "fsync\nrename\nfsync\n");
}

TEST(FileOutputOfTheCommand, saysThatAFileIsTooLarge) {
    Workshop shop;
    std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf", shop.path() / "clip.mxf");
    const Outcome outcome = shop.run("ulimit -f 2; corvid to-xml clip.mxf -o out.xml");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "corvid: out.xml: can't write: File too large\n");
    EXPECT_EQ(shop.count(), 1U);
}

} // namespace
