#include "tools/corvid/Output.h"

#include "tests/tool/RunCommand.h"

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

TEST(Output, knowsTheFileThatItReplaces) {
    const Workshop shop;
    shop.write("out", std::string("old"));
    shop.write("other", std::string("other"));
    const auto output = Output::open((shop.path() / "out").string());
    EXPECT_TRUE(output->replaces((shop.path() / "." / "out").string()));
    EXPECT_FALSE(output->replaces((shop.path() / "other").string()));
    EXPECT_FALSE(output->replaces((shop.path() / "gone").string()));
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
