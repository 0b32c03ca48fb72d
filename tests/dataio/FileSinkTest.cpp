#include "host/dataio/FileSink.h"

#include "host/base/Exceptions.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/stat.h>

using namespace Corvid;
using Corvid::DataIO::FileSink;

namespace {

class FileSinks : public testing::Test {
protected:
    std::string pathOf(const char* name) const { return (folder_.path() / name).string(); }
    std::string read(const char* name) const {
        std::ifstream file(pathOf(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void make(const char* name, const std::string& text) const {
        std::ofstream(pathOf(name), std::ios::binary) << text;
    }
    std::size_t count() const {
        const std::filesystem::directory_iterator entries(folder_.path());
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
    static void write(FileSink& sink, const std::string& text) {
        sink.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }

private:
    Corvid::Testing::TemporaryDir folder_;
};

TEST_F(FileSinks, giveTheFileItsNameAtTheEnd) {
    FileSink sink(pathOf("new"));
    write(sink, "a");
    write(sink, std::string(200'000, 'b'));
    EXPECT_FALSE(std::filesystem::exists(pathOf("new")));
    sink.commit();
    EXPECT_EQ(read("new"), "a" + std::string(200'000, 'b'));
    EXPECT_EQ(count(), 1U);
}

TEST_F(FileSinks, leaveNothingWhereTheEndIsMissing) {
    make("there", "old");
    {
        FileSink sink(pathOf("there"));
        write(sink, "new");
    }
    EXPECT_EQ(read("there"), "old");
    EXPECT_EQ(count(), 1U);
}

TEST_F(FileSinks, replaceAFileAndKeepItsPermissions) {
    make("there", "old");
    ASSERT_EQ(::chmod(pathOf("there").c_str(), 0640), 0);
    FileSink sink(pathOf("there"));
    write(sink, "new");
    sink.commit();
    EXPECT_EQ(read("there"), "new");
    struct stat status {};
    ASSERT_EQ(::stat(pathOf("there").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(FileSinks, writeToWhereALinkLeads) {
    make("there", "old");
    std::filesystem::create_symlink("there", pathOf("link"));
    FileSink sink(pathOf("link"));
    write(sink, "new");
    sink.commit();
    EXPECT_EQ(read("there"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(pathOf("link")));
}

TEST_F(FileSinks, canBeSeveralForOneFile) {
    FileSink first(pathOf("new"));
    FileSink second(pathOf("new"));
    write(first, "first");
    write(second, "second");
    second.commit();
    first.commit();
    EXPECT_EQ(read("new"), "first");
    EXPECT_EQ(count(), 1U);
}

TEST_F(FileSinks, takeNothingMoreWhenTheyAreWritten) {
    FileSink sink(pathOf("new"));
    write(sink, "all");
    sink.commit();
    EXPECT_THROW(write(sink, "more"), Exceptions::InvalidArgument);
    EXPECT_THROW(sink.commit(), Exceptions::InvalidArgument);
    EXPECT_EQ(read("new"), "all");
}

TEST_F(FileSinks, refuseAnEmptyName) { EXPECT_THROW(FileSink(""), Exceptions::InvalidArgument); }

TEST_F(FileSinks, refuseWhatIsNoFile) {
    std::filesystem::create_directory(pathOf("folder"));
    for (const std::string& path :
         {pathOf("folder"), pathOf("none/new"), std::string("/dev/null")}) {
        try {
            FileSink sink(path);
            FAIL() << path;
        } catch (const Exceptions::IOError& error) {
            EXPECT_EQ(Platform::toUtf8(error.message()).rfind("can't write " + path + ": ", 0), 0U)
                << Platform::toUtf8(error.message());
        }
    }
    EXPECT_EQ(count(), 1U);
}

} // namespace
