#include "host/mxf/rewrite/disk/SystemFiles.h"

#include "tests/mxf/ReadBack.h"
#include "tests/support/Paths.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <thread>

namespace Corvid::mxf {
namespace {

using Testing::messageOf;

TEST(SystemFiles, lockAFileUntilItIsClosed) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "clip.mxf").string();
    std::ofstream(path) << "text";
    SystemFiles files;
    {
        const OpenFile first(files, path, FileSystem::Access::write);
        first.lock();
        // Closing another one does not end the lock.
        OpenFile(files, path, FileSystem::Access::write);
        const OpenFile second(files, path, FileSystem::Access::write);
        EXPECT_EQ(messageOf([&] { second.lock(); }),
                  "another program has locked " + path +
                      ", perhaps to change it too; nothing was written");
    }
    const OpenFile last(files, path, FileSystem::Access::write);
    EXPECT_EQ(messageOf([&] { last.lock(); }), "");
    EXPECT_FALSE(files.lacksLocks());
}

/// A file that can be leased.
class LeasedFile : public ::testing::Test {
protected:
    void SetUp() override {
        std::ofstream(path) << "text";
        SystemFiles probe;
        OpenFile(probe, path, FileSystem::Access::write).lease();
        if (probe.lastLease() == SystemFiles::Lease::unknown) {
            GTEST_SKIP() << "the file system of temporary files has no leases";
        }
    }

    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "clip.mxf").string();
    SystemFiles files;
};

TEST_F(LeasedFile, isNotLockedWhereAnotherProgramHasItOpenToWrite) {
    const OpenFile recorder(files, path, FileSystem::Access::write);
    EXPECT_EQ(messageOf([&] { OpenFile(files, path, FileSystem::Access::write).lock(); }),
              "another program has " + path +
                  " open to write it, perhaps to record it; nothing was written");
}

TEST_F(LeasedFile, isLockedAlthoughAnotherProgramReadsIt) {
    const OpenFile player(files, path, FileSystem::Access::read);
    const OpenFile file(files, path, FileSystem::Access::write);
    file.lock();
    file.lease();
    EXPECT_EQ(files.lastLease(), SystemFiles::Lease::openElsewhere);
}

TEST_F(LeasedFile, letsThoseWaitWhoOpenIt) {
    const int signals[] = {SIGIO, SIGURG};
    for (const int signal : signals) {
        ASSERT_EQ(std::signal(signal, SIG_DFL), SIG_DFL);
    }
    std::optional<OpenFile> file;
    file.emplace(files, path, FileSystem::Access::write);
    file->lease();
    EXPECT_EQ(files.lastLease(), SystemFiles::Lease::granted);
    std::atomic<bool> isWritten = false;
    auto reader = std::async(std::launch::async, [&] {
        SystemFiles others;
        const OpenFile read(others, path, FileSystem::Access::read);
        return isWritten.load();
    });
    // Once a program waits, the lease is no longer one to write.
    while (::fcntl(file->number(), F_GETLEASE) == F_WRLCK) {
        std::this_thread::yield();
    }
    isWritten = true;
    file.reset();
    EXPECT_TRUE(reader.get()) << "it has not waited";
}

TEST(SystemFiles, makeNoFileWhereOneIsAlready) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "other").string();
    std::ofstream(path) << "text";
    SystemFiles files;
    for (const auto access : {FileSystem::Access::create, FileSystem::Access::share}) {
        EXPECT_NE(messageOf([&] { OpenFile(files, path, access); }), "");
    }
    EXPECT_EQ(std::filesystem::file_size(path), 4U);
}

TEST(SystemFiles, findNoFileWithANameThatIsTooLong) {
    SystemFiles files;
    EXPECT_FALSE(files.find("/tmp/" + std::string(300, 'x')));
}

TEST(SystemFiles, sayWhatFails) {
    const Testing::TemporaryDir folder;
    const std::string path = (folder.path() / "none.mxf").string();
    SystemFiles files;
    EXPECT_EQ(messageOf([&] { files.resolve(path); }),
              "can't open " + path + ": No such file or directory");
    EXPECT_EQ(messageOf([&] { files.open(path, FileSystem::Access::read); }),
              "can't open " + path + ": No such file or directory");
    EXPECT_EQ(messageOf([&] { files.remove(path); }),
              "can't remove " + path + ": No such file or directory");
    EXPECT_FALSE(files.find(path));
    std::ofstream(path) << "x";
    std::ofstream(path + "2") << "y";
    EXPECT_EQ(messageOf([&] { files.renameToNew(path, path + "2"); }),
              "can't rename " + path + " to " + path + "2: File exists");
}

} // namespace
} // namespace Corvid::mxf
