#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class OddNames : public ::testing::Test {
protected:
    OddNames() {
        shop.run("mkdir in");
        for (const char* name : {"in/a.mxf", "in/b.mxf", "in/c.mxf\r"}) {
            shop.write(name, smallClip());
        }
    }

    Workshop shop;
};

TEST_F(OddNames, aListMayHaveTheLineEndsOfOtherSystems) {
    shop.write("list", std::string("in/a.mxf\r\n\r\nin/b.mxf\r\n"));
    const Outcome outcome = shop.run("corvid get -q @file --files-from list --output-dir out");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(shop.run("ls -b out/in").out, "a.mxf.txt\nb.mxf.txt\n");
    EXPECT_EQ(shop.run("corvid get -q @file --files-from - <list").out, "in/a.mxf\nin/b.mxf\n");
}

TEST_F(OddNames, aNameInAListMayEndWithACarriageReturn) {
    shop.write("list", std::string("in/c.mxf\r\nin/gone.mxf\r\n"));
    const Outcome outcome = shop.run("corvid get -q @file --files-from list --log log");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(shop.read("log"), HasSubstr("\"path\":\"in/c.mxf\\r\""));
    EXPECT_THAT(outcome.err, HasSubstr("corvid: in/gone.mxf: can't open: No such file"));
}

/// With -0, all bytes of a name count.
TEST_F(OddNames, aCarriageReturnBeforeAZeroIsOfTheName) {
    EXPECT_EQ(shop.run("printf 'in/a.mxf\\r\\0' | corvid get -q @file --files-from - -0").status,
              3);
    EXPECT_EQ(shop.run("printf 'in/c.mxf\\r\\0' | corvid get -q @file --files-from - -0").status,
              0);
}

class MistakenAddress : public OddNames, public ::testing::WithParamInterface<const char*> {};

TEST_P(MistakenAddress, isRefusedWithTheReasonAndWithoutSecrets) {
    const std::string address = GetParam();
    const std::string line = "corvid info '" + address + "://ann:SECRET@host/x.mxf?key=SECRET' ";
    const std::string text =
        "can't open: not an address that corvid reads (https:// or http://), and no such file\n";
    const Outcome one = shop.run(line);
    EXPECT_EQ(one.status, 3);
    EXPECT_EQ(one.err, "corvid: " + address + "://host/x.mxf: " + text);
    const Outcome many = shop.run(line + "in/a.mxf --log log");
    EXPECT_EQ(many.status, 3);
    EXPECT_THAT(many.err, HasSubstr("corvid: " + address + "://host/x.mxf: " + text));
    EXPECT_THAT(many.err + shop.read("log"), Not(HasSubstr("SECRET")));
}

INSTANTIATE_TEST_SUITE_P(, MistakenAddress, ::testing::Values("htps", "ftp", "FILE"));

TEST_F(OddNames, anAddressWithOneSlashIsMistaken) {
    for (const std::string path : {"http:/host/x.mxf", "HTTPS:/host/x.mxf"}) {
        EXPECT_THAT(shop.run("corvid info " + path).err,
                    HasSubstr(path + ": can't open: not an address that corvid reads"));
    }
    for (const std::string path : {"in:/x.mxf", "c://x.mxf", "in/://x.mxf"}) {
        EXPECT_EQ(shop.run("corvid info " + path).err,
                  "corvid: " + path + ": can't open: No such file or directory\n");
    }
}

TEST_F(OddNames, aFileThatIsCalledAsAnAddressIsRead) {
    shop.run("mkdir -p ftp:/ann@host; cp in/a.mxf 'ftp:/ann@host/x.mxf?y'");
    const Outcome outcome = shop.run("corvid get -q @file 'ftp://ann@host/x.mxf?y'");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "ftp://ann@host/x.mxf?y\n");
}

} // namespace
