#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

struct Wrong {
    const char* name;
    const char* line;
    const char* says;
};
class WrongCommandLine : public ::testing::TestWithParam<Wrong> {};

TEST_P(WrongCommandLine, endsWithTwoAndOneLine) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    const Outcome outcome = shop.run(GetParam().line);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err, StartsWith("corvid: "));
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().says));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(
    , WrongCommandLine,
    ::testing::Values(
        Wrong{"UnknownVerb", "corvid sing clip.mxf", "no verb 'sing'; corvid help lists the verbs"},
        Wrong{"MistypedVerb", "corvid chek clip.mxf", "no verb 'chek'; did you mean 'check'?"},
        Wrong{"SwappedVerb", "corvid --json form-xml x.xml", "did you mean 'from-xml'?"},
        Wrong{"HelpOfAMistypedVerb", "corvid help inof", "no verb 'inof'; did you mean 'info'?"},
        Wrong{"MistypedOption", "corvid info clip.mxf --jsn",
              "info: no option '--jsn'; did you mean '--json'?"},
        Wrong{"MistypedOptionWithAValue", "corvid to-xml clip.mxf --partitoin=1",
              "to-xml: no option '--partitoin'; did you mean '--partition'?"},
        Wrong{"NoClip", "corvid to-xml", "CLIP.mxf"},
        Wrong{"NoClipForInfo", "corvid info", "CLIP.mxf"},
        Wrong{"UnknownOption", "corvid info --loud clip.mxf",
              "info: no option '--loud'; see corvid help info"},
        Wrong{"UnknownOptionBeforeTheVerb", "corvid --loud info clip.mxf", "no option '--loud'"},
        Wrong{"OptionOfTheVerbBeforeIt", "corvid --json info clip.mxf",
              "corvid: option '--json' goes after the verb: corvid info --json"},
        Wrong{"NoValue", "corvid to-xml clip.mxf -o", "to-xml: --output needs a value; see"},
        Wrong{"RepeatedOption", "corvid to-xml clip.mxf -o a.xml --output b.xml",
              "to-xml: --output is there more than once; see corvid help to-xml"},
        Wrong{"KagThatIsNoNumber", "corvid from-xml a.xml -o b.mxf --kag x",
              "from-xml: --kag: expected a number from 1 to 1048576, not 'x'"},
        Wrong{"TwoDocuments", "corvid from-xml clip.xml other.xml -o clip.mxf",
              "from-xml: unexpected argument 'other.xml'; see corvid help from-xml"},
        Wrong{"Partition", "corvid to-xml clip.mxf --partition last", "--partition"},
        Wrong{"References", "corvid to-xml clip.mxf --references all", "links or values"},
        Wrong{"Encoding", "corvid to-xml clip.mxf --encoding latin-1", "utf-8 or utf-16"},
        Wrong{"Start", "corvid to-xml clip.mxf --start 12", "InstanceUID"},
        Wrong{"ReferencesInJson", "corvid to-json clip.mxf --references all", "links or values"},
        Wrong{"EncodingOfJson", "corvid to-json clip.mxf --encoding utf-16",
              "to-json: no option '--encoding'; see corvid help to-json"},
        Wrong{"JsonIsInput", "corvid to-json clip.mxf -o ./clip.mxf", "the input itself"},
        Wrong{"OutputIsInput", "corvid to-xml clip.mxf -o ./clip.mxf", "the input itself"},
        Wrong{"OutputIsStandardInput", "corvid to-xml - -o clip.mxf <clip.mxf",
              "the input itself"}),
    [](const auto& each) { return each.param.name; });

TEST(Command, tellsItsVersion) {
    for (const char* line : {"corvid --version", "corvid -V"}) {
        const Outcome outcome = Workshop().run(line);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, "corvid " CORVID_TEST_VERSION "\n");
    }
}

TEST(Command, withoutArgumentsListsTheVerbsAsAMistake) {
    const Outcome outcome = Workshop().run("corvid");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_EQ(outcome.err, "corvid: a verb is missing\n\n" + Workshop().run("corvid --help").out);
}

TEST(Command, helpIsAVerbToo) {
    const Workshop shop;
    EXPECT_EQ(shop.run("corvid help").out, shop.run("corvid --help").out);
    for (const std::string verb :
         {"to-xml", "to-json", "from-xml", "info", "check", "schema", "dictionary"}) {
        const Outcome outcome = shop.run("corvid help " + verb);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, HasSubstr("Usage: corvid " + verb));
        EXPECT_EQ(outcome.out, shop.run("corvid " + verb + " --help").out);
    }
}

TEST(Command, helpNamesEveryVerb) {
    const Outcome outcome = Workshop().run("corvid --help");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out, HasSubstr("to-xml"));
    EXPECT_THAT(outcome.out, HasSubstr("to-json"));
    EXPECT_THAT(outcome.out, HasSubstr("info"));
    EXPECT_THAT(outcome.out, HasSubstr("Exit status"));
}

TEST(Command, helpOfToXmlNamesEveryOption) {
    const Outcome outcome = Workshop().run("corvid to-xml --help");
    EXPECT_EQ(outcome.status, 0);
    for (const char* option :
         {"CLIP.mxf", "--output", "--partition", "--references", "--structural-only", "--start",
          "--encoding", "--compact", "--replace-invalid", "--dictionary", "(default: auto)"}) {
        EXPECT_THAT(outcome.out, HasSubstr(option));
    }
}

TEST(Command, helpOfToJsonNamesEveryOption) {
    const Outcome outcome = Workshop().run("corvid to-json --help");
    EXPECT_EQ(outcome.status, 0);
    for (const char* option :
         {"CLIP.mxf", "--output", "--force", "--partition", "--references", "--structural-only",
          "--start", "--compact", "--dictionary", "--warnings-as-errors"}) {
        EXPECT_THAT(outcome.out, HasSubstr(option));
    }
}

TEST(Command, helpOfInfoNamesEveryOption) {
    const Outcome outcome = Workshop().run("corvid info --help");
    EXPECT_EQ(outcome.status, 0);
    for (const char* option :
         {"CLIP.mxf", "--json", "--partition", "--dictionary", "--warnings", "--labels", "--all"}) {
        EXPECT_THAT(outcome.out, HasSubstr(option));
    }
}

TEST(Command, helpFitsInEightyColumns) {
    std::istringstream lines(
        Workshop()
            .run("corvid to-xml --help; corvid info -h; corvid check -h; corvid dictionary -h; "
                 "corvid -h; corvid from-xml -h; corvid to-json -h; corvid schema -h; "
                 "corvid help help")
            .out);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_LE(line.size(), 80U) << line;
    }
    EXPECT_GT(count, 30U);
}

TEST(Command, saysThatAFileIsNotThere) {
    for (const char* verb : {"to-xml", "info", "check"}) {
        const Outcome outcome = Workshop().run(std::string("corvid ") + verb + " gone.mxf");
        EXPECT_EQ(outcome.status, 3);
        EXPECT_EQ(outcome.err, "corvid: gone.mxf: can't open: No such file or directory\n");
        EXPECT_THAT(outcome.out, IsEmpty());
    }
}

TEST(Command, saysThatAFolderIsNoFile) {
    const Outcome outcome = Workshop().run("corvid info .");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("directory"));
}

TEST(Command, refusesWhatIsNoMxfFile) {
    const Workshop shop;
    shop.write("text.mxf", std::string(100000, 'x'));
    shop.write("empty.mxf", std::string());
    for (const char* line : {"corvid info text.mxf", "corvid to-xml text.mxf",
                             "corvid info empty.mxf", "corvid to-xml - </dev/null"}) {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 1) << line;
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST(Command, refusesABrokenDictionaryWithItsLine) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    shop.write("house.dict", std::string("# mine\nnonsense here\n"));
    const Outcome outcome = shop.run("corvid info clip.mxf --dictionary house.dict");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, StartsWith("corvid: house.dict:2"));
}

TEST(Command, saysThatADictionaryIsNotThere) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    const Outcome outcome = shop.run("corvid info clip.mxf --dictionary gone.dict");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("gone.dict"));
}

TEST(Command, keepsControlCharactersOfNamesFromTheTerminal) {
    const Outcome outcome = Workshop().run("corvid info \"$(printf 'a\\033[31mb')\"");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("a\\x1b[31mb"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("\033")));
}

TEST(Command, takesNoFooterForTheHeaderPartition) {
    const Workshop shop;
    shop.write("footer.mxf", MxfBuilder().add(footerPartition(smallMetadata())).build());
    const Outcome outcome = shop.run("corvid to-xml footer.mxf --partition header");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err, HasSubstr("no header partition: the first is a footer partition; "
                                       "metadata is in 0 (footer)"));
    EXPECT_EQ(shop.run("corvid to-xml footer.mxf --partition footer").status, 0);
}

TEST(Command, tellsWhichPartitionsHaveMetadata) {
    const Workshop shop;
    shop.write("clip.mxf", MxfBuilder()
                               .add(headerPartition())
                               .add(bodyPartition())
                               .add(footerPartition(smallMetadata()))
                               .withRandomIndexPack()
                               .build());
    EXPECT_EQ(shop.run("corvid to-xml clip.mxf --partition 0").status, 0);
    EXPECT_EQ(shop.run("corvid to-xml clip.mxf --partition header").status, 0);
    EXPECT_EQ(shop.run("corvid to-xml clip.mxf --partition footer").status, 0);
    for (const char* number : {"1", "3", "4294967295"}) {
        const Outcome outcome =
            shop.run(std::string("corvid to-xml clip.mxf --partition ") + number);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr("metadata is in 0 (header), 2 (footer)"));
    }
}

} // namespace
