#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

TEST(Info, tellsOfAFileFromEverySource) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    const Outcome file = shop.run("corvid info clip.mxf");
    EXPECT_EQ(file.status, 0);
    EXPECT_THAT(file.out, HasSubstr("OP1a (single item, single package"));
    EXPECT_THAT(file.out, HasSubstr("2 sets  1 ContentStorage, 1 Preface"));
    EXPECT_THAT(file.out, Not(HasSubstr("\033")));
    EXPECT_THAT(file.err, IsEmpty());
    const Outcome pipe = shop.run("cat clip.mxf | corvid info -");
    EXPECT_EQ(pipe.status, 0);
    EXPECT_THAT(pipe.out, HasSubstr("2 sets"));
}

TEST(Info, countsWhatTheDictionaryDoesNotKnow) {
    const Workshop shop;
    const Bytes metadata =
        join({standardPrimer(), set(structuralKey(prefaceSet), 1, {property(0x8123, Bytes(4, 7))}),
              klv(hex("06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00"), Bytes(5, 1))});
    shop.write("odd.mxf",
               MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build());
    const Outcome outcome = shop.run("corvid info odd.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(
        outcome.out,
        HasSubstr("Dark sets\n  06.0e.2b.34.02.53.01.01.0e.7f.7f.01.01.01.01.00, 25 bytes"));
    EXPECT_THAT(outcome.out, HasSubstr("Unknown properties\n  tag 81.23\n"));
}

TEST(Info, keepsControlCharactersOfTheFileFromTheTerminal) {
    const Workshop shop;
    shop.write("clip.mxf", clipWithCompany(u"a\u001b[31mb\nc\u009bd"));
    EXPECT_THAT(shop.run("corvid info clip.mxf").out, HasSubstr("a\\x1b[31mb\\x0ac\\x9bd"));
    EXPECT_THAT(shop.run("corvid info --json clip.mxf").out, HasSubstr("a\\u001b[31mb\\nc"));
}

TEST(Info, coloursOnlyOnATerminal) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    if (shop.run("command -v script").status != 0) {
        GTEST_SKIP() << "no script(1) to make a terminal";
    }
    const std::string onTerminal =
        "TERM=xterm script -qec 'corvid info clip.mxf' /dev/null </dev/null";
    EXPECT_THAT(shop.run(onTerminal).out, HasSubstr("\033[1m"));
    EXPECT_THAT(shop.run("NO_COLOR=1 " + onTerminal).out, Not(HasSubstr("\033[1m")));
}

TEST(Info, jsonOfEverySampleIsJson) {
    const auto samples = samplesDir();
    if (samples.empty() || python().empty()) {
        GTEST_SKIP() << "no folder of samples, or no Python";
    }
    const Workshop shop;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(samples)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        ++count;
        const std::string clip = "'" + entry.path().string() + "'";
        const Outcome json = shop.run("corvid info --json " + clip + " | '" + python() +
                                      "' -c 'import json,sys; d=json.load(sys.stdin); "
                                      "assert d[\"packages\"] and d[\"identifications\"] and "
                                      "d[\"operationalPattern\"][\"name\"], d'");
        EXPECT_EQ(json.status, 0) << clip << json.err;
        const Outcome text = shop.run("corvid info " + clip);
        EXPECT_EQ(text.status, 0) << clip;
        EXPECT_THAT(text.out, HasSubstr("Material package")) << clip;
    }
    EXPECT_GT(count, 0U);
}

} // namespace
