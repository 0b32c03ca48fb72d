#include "host/dataio/FileSource.h"

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <fstream>
#include <limits>
#include <unistd.h>

namespace Corvid::DataIO {
namespace {

class FileSourceTest : public ::testing::Test {
protected:
    std::string write(const std::string& content) {
        std::ofstream(path(), std::ios::binary) << content;
        return path();
    }
    std::string path() const { return (folder_.path() / "file.bin").string(); }

private:
    Testing::TemporaryDir folder_;
};

std::string read(RandomAccessSource& source, std::uint64_t offset, std::size_t count) {
    std::string text(count, '?');
    text.resize(source.readAt(offset, reinterpret_cast<unsigned char*>(text.data()), count));
    return text;
}

TEST_F(FileSourceTest, readsAnywhereAndInAnyOrder) {
    const auto source = openSource(write("0123456789"));
    EXPECT_EQ(source->size(), 10U);
    EXPECT_EQ(read(*source, 7, 3), "789");
    EXPECT_EQ(read(*source, 0, 2), "01");
    EXPECT_EQ(read(*source, 3, 0), "");
}

TEST_F(FileSourceTest, givesWhatIsThereAtItsEnd) {
    const auto source = openSource(write("0123456789"));
    EXPECT_EQ(read(*source, 8, 5), "89");
    EXPECT_EQ(read(*source, 10, 5), "");
    EXPECT_EQ(read(*source, 11, 5), "");
    EXPECT_EQ(read(*source, std::numeric_limits<std::uint64_t>::max(), 5), "");
    EXPECT_EQ(source->available(8, 5), 2U);
    EXPECT_EQ(source->available(10, 5), 0U);
    EXPECT_EQ(source->available(std::numeric_limits<std::uint64_t>::max(), 5), 0U);
}

TEST_F(FileSourceTest, readsBehindTheFirstHundredGigabytes) {
    const off_t place = off_t{120} * 1000 * 1000 * 1000;
    {
        const auto file = FileDescriptor::owning(::open(path().c_str(), O_CREAT | O_WRONLY, 0600));
        if (!file.isOpen() || ::ftruncate(file.number(), place) != 0 ||
            ::pwrite(file.number(), "tail", 4, place) != 4) {
            GTEST_SKIP() << "the file system of temporary files refuses a sparse file of 120 GB";
        }
    }
    const auto source = openSource(path());
    EXPECT_EQ(source->size(), static_cast<std::uint64_t>(place) + 4);
    EXPECT_EQ(read(*source, static_cast<std::uint64_t>(place) + 1, 9), "ail");
}

TEST_F(FileSourceTest, saysThatItCannotBeRead) {
    write("x");
    FileSource source(FileDescriptor::owning(::open(path().c_str(), O_WRONLY)), "some.mxf");
    try {
        read(source, 0, 1);
        FAIL();
    } catch (const Exceptions::IOError& error) {
        EXPECT_EQ(Platform::toUtf8(error.message()), "can't read some.mxf: Bad file descriptor");
    }
}

} // namespace
} // namespace Corvid::DataIO
