#include "host/dataio/PipeSource.h"

#include "host/base/Exceptions.h"

#include <gtest/gtest.h>

#include <cstdlib>
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

TEST(PipeSource, saysThatItFindsNoRoomForTheTemporaryFile) {
    Pipe pipe = makePipe();
    write(pipe, "x");
    PipeSource source(std::move(pipe.out), "pipe");
    const char* const before = std::getenv("TMPDIR");
    const std::string kept = before == nullptr ? "" : before;
    ::setenv("TMPDIR", "/nowhere at all", 1);
    EXPECT_THROW(source.available(0, 1), Exceptions::IOError);
    before == nullptr ? ::unsetenv("TMPDIR") : ::setenv("TMPDIR", kept.c_str(), 1);
}

} // namespace
} // namespace Corvid::DataIO
