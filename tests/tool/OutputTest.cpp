#include "tools/corvid/output/Output.h"

#include "tests/tool/RunCommand.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace Corvid::Testing;
using Corvid::Tool::Output;
using Corvid::Tool::OutputError;

namespace {

const unsigned char text[] = {'n', 'e', 'w'};

TEST(Output, appearsWhenItIsComplete) {
    const Workshop shop;
    const auto output = Output::open((shop.path() / "out").string());
    output->write(text, sizeof text);
    EXPECT_TRUE(output->isHeldBack());
    EXPECT_FALSE(shop.has("out"));
    output->commit();
    EXPECT_EQ(shop.read("out"), "new");
    EXPECT_EQ(shop.count(), 1U);
}

TEST(Output, leavesWhatWasThereWhenItIsGivenUp) {
    const Workshop shop;
    shop.write("out", std::string("old"));
    Output::open((shop.path() / "out").string())->write(text, sizeof text);
    EXPECT_EQ(shop.read("out"), "old");
    EXPECT_EQ(shop.count(), 1U);
}

TEST(Output, refusesAFileThatMayNotBeWritten) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root may write everything";
    }
    const Workshop shop;
    shop.write("out", std::string("old"));
    std::filesystem::permissions(shop.path() / "out", std::filesystem::perms::owner_read);
    EXPECT_THROW(Output::open((shop.path() / "out").string()), OutputError);
}

TEST(Output, knowsTheFileThatItGoesTo) {
    const Workshop shop;
    shop.write("out", std::string("old"));
    shop.write("other", std::string("other"));
    shop.run("ln -s out link; ln out twin");
    const Corvid::DataIO::FileDescriptor file = Corvid::DataIO::FileDescriptor::owning(
        ::open((shop.path() / "out").c_str(), O_WRONLY | O_APPEND));
    for (const std::string& path :
         {(shop.path() / "out").string(), "/dev/fd/" + std::to_string(file.number())}) {
        const auto output = Output::open(path);
        EXPECT_TRUE(output->goesTo((shop.path() / "." / "out").string()));
        EXPECT_TRUE(output->goesTo((shop.path() / "link").string()));
        EXPECT_TRUE(output->goesTo((shop.path() / "twin").string()));
        EXPECT_FALSE(output->goesTo((shop.path() / "other").string()));
        EXPECT_FALSE(output->goesTo((shop.path() / "gone").string()));
    }
    EXPECT_FALSE(Output::open("/dev/null")->goesTo("/dev/null"));
}

TEST(Output, aLinkToNothingGetsItsFile) {
    const Workshop shop;
    shop.run("mkdir folder; ln -s folder/out link; ln -s link other");
    const auto output = Output::open((shop.path() / "other").string());
    output->write(text, sizeof text);
    output->commit();
    EXPECT_EQ(shop.read("folder/out"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(shop.path() / "link"));
    EXPECT_TRUE(std::filesystem::is_symlink(shop.path() / "other"));
}

TEST(Output, refusesALinkToItself) {
    const Workshop shop;
    shop.run("ln -s self self");
    EXPECT_THROW(Output::open((shop.path() / "self").string()), OutputError);
    EXPECT_TRUE(std::filesystem::is_symlink(shop.path() / "self"));
}

TEST(Output, anOpenFileKeepsWhatIsInIt) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
        shop.run(std::string("(echo before; corvid to-xml clip.mxf -o ") + name +
                 "; echo after) >all; echo more >>all");
        const std::string all = shop.read("all");
        EXPECT_EQ(all.rfind("before\n<?xml", 0), 0U) << name << all;
        EXPECT_NE(all.find(">\nafter\nmore\n"), std::string::npos) << name << all;
    }
}

TEST(Output, aDeviceIsWrittenToAsItIs) {
    const auto output = Output::open("/dev/null");
    EXPECT_FALSE(output->isHeldBack());
    output->write(text, sizeof text);
    output->commit();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(Output, takesNoMessagesWhereStandardErrorIsClosed) {
    const Workshop shop;
    shop.write("odd.mxf", clipWithANamelessSet());
    const Outcome outcome = shop.run("corvid to-xml odd.mxf -o odd.xml 2>&-");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(shop.read("odd.xml").substr(0, 5), "<?xml");
    EXPECT_EQ(shop.run("corvid to-xml odd.mxf 2>/dev/null >&-").status, 3);
    EXPECT_EQ(shop.run("corvid to-xml - 2>/dev/null <&-").status, 3);
}

} // namespace
