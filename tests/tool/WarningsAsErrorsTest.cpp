#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class WarningsAsErrors : public ::testing::Test {
protected:
    WarningsAsErrors() {
        shop.write("good.mxf", smallClip());
        shop.write("odd.mxf", clipWithANamelessSet());
        PartitionSpec spec = headerPartition();
        spec.headerByteCount = 0;
        shop.write("count.mxf", MxfBuilder().add(spec).build());
        shop.write("control.mxf", clipWithCompany(u"a\u0001b"));
        shop.run("corvid to-xml good.mxf | sed /OperationalPattern/d >bare.xml");
        shop.write("old.out", std::string("old"));
    }

    Workshop shop;
};

TEST_F(WarningsAsErrors, changeNothingWhereThereAreNone) {
    for (const char* line :
         {"corvid info --warnings-as-errors good.mxf", "corvid check --warnings-as-errors good.mxf",
          "corvid to-xml --warnings-as-errors good.mxf"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << line;
        EXPECT_THAT(outcome.err, IsEmpty());
        EXPECT_THAT(outcome.out, Not(IsEmpty()));
    }
}

TEST_F(WarningsAsErrors, endVerbsThatReportWithStatusOneAfterTheReport) {
    for (const std::string verb : {"info", "check", "info --json", "check --json"}) {
        const Outcome strict = shop.run("corvid " + verb + " --warnings-as-errors odd.mxf");
        const Outcome plain = shop.run("corvid " + verb + " odd.mxf");
        EXPECT_EQ(plain.status, 0);
        EXPECT_EQ(strict.status, 1);
        EXPECT_EQ(strict.out, plain.out);
        EXPECT_EQ(strict.err, plain.err + "corvid: odd.mxf: 1 warning, and --warnings-as-errors\n");
    }
    EXPECT_THAT(shop.run("corvid check --warnings-as-errors odd.mxf good.mxf").err,
                EndsWith("corvid: odd.mxf: 1 warning, and --warnings-as-errors\n"
                         "corvid: 2 files: 1 ok, 1 refused\ncorvid:   odd.mxf: refused\n"));
    EXPECT_EQ(shop.run("corvid check --warnings-as-errors odd.mxf none.mxf").status, 3);
}

TEST_F(WarningsAsErrors, keepVerbsThatWriteFromWriting) {
    for (const std::string line :
         {"to-xml odd.mxf", "to-json odd.mxf", "to-xml --validate count.mxf",
          "to-xml --replace-invalid control.mxf", "from-xml bare.xml"}) {
        for (const char* target : {"-", "new.out", "old.out"}) {
            const Outcome outcome =
                shop.run("corvid " + line + " --warnings-as-errors -o " + target);
            EXPECT_EQ(outcome.status, 1) << line;
            EXPECT_THAT(outcome.out, IsEmpty()) << line;
            EXPECT_THAT(outcome.err, HasSubstr(": warning: ")) << line;
            EXPECT_THAT(outcome.err, EndsWith(": 1 warning, and --warnings-as-errors\n")) << line;
        }
        EXPECT_EQ(shop.run("corvid " + line + " -o ok.out").status, 0) << line;
    }
    EXPECT_FALSE(shop.has("new.out"));
    EXPECT_EQ(shop.read("old.out"), "old");
}

TEST_F(WarningsAsErrors, areListedWithTheirCodesInTheJsonOfInfo) {
    const Outcome outcome = shop.run("corvid info --json odd.mxf");
    EXPECT_THAT(outcome.out, HasSubstr("\"code\": \"no-instance-uid\""));
    EXPECT_THAT(outcome.out, HasSubstr("\"errors\": []"));
}

TEST_F(WarningsAsErrors, areInTheJsonOfAFileThatCantBeRead) {
    EXPECT_EQ(shop.run("corvid info --json gone.mxf").out,
              "{\n  \"file\": \"gone.mxf\",\n  \"warnings\": [],\n  \"errors\": [\n    {\n"
              "      \"text\": \"can't open: No such file or directory\",\n"
              "      \"byte\": null\n    }\n  ]\n}\n");
    shop.write("body.mxf", MxfBuilder().add(bodyPartition()).build());
    const Outcome outcome = shop.run("corvid info --json body.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"code\": \"no-header-partition\""));
    EXPECT_THAT(outcome.out, HasSubstr("\"text\": \"no header metadata in partition 0"));
    EXPECT_THAT(outcome.err, HasSubstr("[no-header-partition]\ncorvid: body.mxf: no header"));
}

} // namespace
