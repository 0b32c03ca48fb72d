#include "host/dataio/OpenSource.h"

#include "host/base/Exceptions.h"
#include "host/dataio/FileDescriptor.h"
#include "host/dataio/FileSource.h"
#include "host/dataio/PipeSource.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace Corvid::DataIO {
namespace {

class OpenSourceTest : public ::testing::Test {
protected:
    std::string path(const char* name) const { return (folder_.path() / name).string(); }

private:
    Testing::TemporaryDir folder_;
};

std::string messageOfOpening(const std::string& path) {
    try {
        openSource(path);
    } catch (const Exceptions::IOError& error) {
        return Platform::toUtf8(error.message());
    }
    return "opened";
}

/// Puts another file in the place of standard input for the scope.
class StandardInput {
public:
    explicit StandardInput(int other) : before_(FileDescriptor::owning(::dup(STDIN_FILENO))) {
        ::dup2(other, STDIN_FILENO);
    }
    ~StandardInput() {
        if (before_.isOpen()) {
            ::dup2(before_.number(), STDIN_FILENO);
        }
    }

private:
    FileDescriptor before_;
};

TEST_F(OpenSourceTest, saysWhyAFileDoesNotOpen) {
    const std::string missing = path("missing.mxf");
    EXPECT_EQ(messageOfOpening(missing), "can't open " + missing + ": No such file or directory");
}

TEST_F(OpenSourceTest, refusesAFolder) {
    const std::string folder = path("");
    EXPECT_EQ(messageOfOpening(folder), "can't read " + folder + ": Is a directory");
}

TEST_F(OpenSourceTest, takesStandardInputFromAFileAsAFile) {
    std::ofstream(path("in"), std::ios::binary) << "abc";
    const auto file = FileDescriptor::owning(::open(path("in").c_str(), O_RDONLY));
    const StandardInput replaced(file.number());
    const auto source = openSource("-");
    EXPECT_NE(dynamic_cast<FileSource*>(source.get()), nullptr);
    EXPECT_EQ(source->name(), "standard input");
    EXPECT_EQ(source->size(), 3U);
}

TEST_F(OpenSourceTest, leavesStandardInputOpen) {
    std::ofstream(path("in"), std::ios::binary) << "abc";
    const auto file = FileDescriptor::owning(::open(path("in").c_str(), O_RDONLY));
    const StandardInput replaced(file.number());
    openSource("-").reset();
    EXPECT_NE(::fcntl(STDIN_FILENO, F_GETFD), -1);
}

TEST_F(OpenSourceTest, takesANamedPipe) {
    const std::string fifo = path("fifo");
    if (::mkfifo(fifo.c_str(), 0600) != 0) {
        GTEST_SKIP() << "the file system of temporary files has no named pipes";
    }
    std::thread writer([&fifo] { std::ofstream(fifo, std::ios::binary) << "through the pipe"; });
    const auto source = openSource(fifo);
    EXPECT_NE(dynamic_cast<PipeSource*>(source.get()), nullptr);
    EXPECT_EQ(source->size(), 16U);
    writer.join();
}

} // namespace
} // namespace Corvid::DataIO
