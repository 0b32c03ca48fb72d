#include "host/dataio/PipeSource.h"

#include "host/base/Exceptions.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace Corvid::DataIO {
namespace {

struct Pipe {
    FileDescriptor out;
    FileDescriptor in;
};

Pipe makePipe() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::pipe(ends), 0);
    return {FileDescriptor::owning(ends[0]), FileDescriptor::owning(ends[1])};
}

void write(const Pipe& pipe, const std::string& text) {
    ASSERT_EQ(::write(pipe.in.number(), text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
}

std::string read(RandomAccessSource& source, std::uint64_t offset, std::size_t count) {
    std::string text(count, '?');
    text.resize(source.readAt(offset, reinterpret_cast<unsigned char*>(text.data()), count));
    return text;
}

/// TMPDIR, as long as it lives.
class FolderOfTemporaryFiles {
public:
    explicit FolderOfTemporaryFiles(const std::string& path) {
        if (const char* const before = std::getenv("TMPDIR")) {
            before_ = before;
        }
        ::setenv("TMPDIR", path.c_str(), 1);
    }
    FolderOfTemporaryFiles(const FolderOfTemporaryFiles&) = delete;
    FolderOfTemporaryFiles& operator=(const FolderOfTemporaryFiles&) = delete;
    ~FolderOfTemporaryFiles() {
        before_ ? ::setenv("TMPDIR", before_->c_str(), 1) : ::unsetenv("TMPDIR");
    }

private:
    std::optional<std::string> before_;
};

TEST(PipeSource, doesNotWaitForMoreThanIsAskedFor) {
    Pipe pipe = makePipe();
    write(pipe, "0123456789");
    PipeSource source(std::move(pipe.out), "pipe");
    // The other end stays open: asking the pipe for an eleventh byte would wait for ever.
    EXPECT_EQ(read(source, 4, 6), "456789");
    EXPECT_EQ(read(source, 0, 3), "012");
    EXPECT_EQ(source.available(2, 8), 8U);
}

TEST(PipeSource, givesWhatThereIsAtItsEnd) {
    Pipe pipe = makePipe();
    write(pipe, "0123456789");
    pipe.in = FileDescriptor();
    PipeSource source(std::move(pipe.out), "pipe");
    EXPECT_EQ(read(source, 8, 5), "89");
    EXPECT_EQ(read(source, 12, 5), "");
    EXPECT_EQ(source.available(8, ~std::uint64_t{0}), 2U);
    EXPECT_EQ(source.size(), 10U);
}

TEST(PipeSource, hasNoBytesBehindAnEmptyPipe) {
    Pipe pipe = makePipe();
    pipe.in = FileDescriptor();
    PipeSource source(std::move(pipe.out), "pipe");
    EXPECT_EQ(source.size(), 0U);
    EXPECT_EQ(read(source, 0, 5), "");
}

TEST(PipeSource, keepsFarMoreThanAPipeHolds) {
    std::string text(3'000'000, ' ');
    for (std::size_t i = 0; i != text.size(); ++i) {
        text[i] = static_cast<char>(i * 2654435761U >> 24);
    }
    Pipe pipe = makePipe();
    std::thread writer([&] {
        std::size_t done = 0;
        while (done != text.size()) {
            done += static_cast<std::size_t>(
                ::write(pipe.in.number(), &text[done], text.size() - done));
        }
        pipe.in = FileDescriptor();
    });
    PipeSource source(std::move(pipe.out), "pipe");
    EXPECT_EQ(read(source, 2'000'000, 1000), text.substr(2'000'000, 1000));
    EXPECT_EQ(read(source, 5, 70'000), text.substr(5, 70'000));
    EXPECT_EQ(source.size(), text.size());
    EXPECT_EQ(read(source, 0, text.size()), text);
    writer.join();
}

TEST(PipeSource, keepsItsBytesWhereNoSignalCanLeaveThem) {
    const Testing::TemporaryDir folder;
    const FileDescriptor nameless = FileDescriptor::owning(
        ::open(folder.path().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!nameless.isOpen()) {
        GTEST_SKIP() << "the file system of temporary files has none without a name";
    }
    const FileDescriptor events = FileDescriptor::owning(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(::inotify_add_watch(events.number(), folder.path().c_str(), IN_CREATE), 0);
    Pipe pipe = makePipe();
    write(pipe, "x");
    PipeSource source(std::move(pipe.out), "pipe");
    const FolderOfTemporaryFiles set(folder.path());
    EXPECT_EQ(read(source, 0, 1), "x");
    char event[4096];
    EXPECT_EQ(::read(events.number(), event, sizeof event), -1);
}

TEST(PipeSource, saysThatItFindsNoRoomForTheTemporaryFile) {
    Pipe pipe = makePipe();
    write(pipe, "x");
    PipeSource source(std::move(pipe.out), "pipe");
    const FolderOfTemporaryFiles set("/nowhere at all");
    EXPECT_THROW(source.available(0, 1), Exceptions::IOError);
}

} // namespace
} // namespace Corvid::DataIO
