#include "tests/tool/RunCommand.h"

#include <gtest/gtest.h>
#include <regex>

using namespace Corvid::Testing;

namespace {

/// Nothing of it is fit for a terminal, in XML it can be text.
const std::string unseen =
    "\x7F\u0085\u009B\u00AD\u061C\u200B\u200F\u2028\u202E\u2060\u2066\uFEFF\U000E0041";
/// Names of files and arguments can have more.
const std::string evil = "x\x1B[31m\r\n\xFF\xC3" + unseen + "y";

/// The bytes of a text that a terminal should not get, each in hexadecimal.
std::string unfit(const std::string& text) {
    static const std::vector<std::string> wrong = {
        "\x7F",   "\u0085", "\u009B", "\u00AD", "\u061C", "\u200B",    "\u200F",
        "\u2028", "\u202E", "\u2060", "\u2066", "\uFEFF", "\U000E0041"};
    std::string found;
    for (const std::string& each : wrong) {
        found += text.find(each) == std::string::npos ? "" : "[" + each + "] ";
    }
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x20 && c != '\n') || byte == 0xFF || byte == 0xC3) {
            found += std::to_string(byte) + " ";
        }
    }
    return found;
}

/// The sample, whose texts are all like that.
std::string evilDocument(const Workshop& shop) {
    std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf", shop.path() / "sample.mxf");
    const std::string texts("(<rp210:(?:ApplicationName|ApplicationPlatform|"
                            "ApplicationSupplierName|ApplicationVersionString|PackageName|"
                            "TrackName)>)[^<]*");
    return std::regex_replace(shop.run("corvid to-xml sample.mxf").out, std::regex(texts),
                              "$1x" + unseen);
}

struct Case {
    const char* name;
    const char* line; ///< EVIL stands for a text in quotation marks
    /// What shows that the text was there to be escaped.
    const char* shows = "u202e";
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Terminal : public ::testing::TestWithParam<Case> {};

TEST_P(Terminal, getsNothingThatDrivesIt) {
    const Workshop shop;
    shop.write("evil.xml", evilDocument(shop));
    ASSERT_EQ(shop.run("corvid from-xml evil.xml -o evil.mxf").status, 0);
    shop.write("broken.xml", "<a:" + unseen + "/>");
    const auto edited = [&shop](const char* what, const std::string& by) {
        return std::regex_replace(shop.read("evil.xml"), std::regex(what), by);
    };
    shop.write("uri.xml", edited("urn:SMPTE:RP210", "urn:" + unseen));
    shop.write("value.xml", edited("(<rp210:BitRate>)[^<]*", "$1" + unseen));
    shop.write("label.xml", edited("(<rp210:OperationalPattern>)[^<]*", "$1" + unseen));
    shop.write("broken.dict", "namespace x urn:" + unseen + "\n");
    const std::string line =
        std::regex_replace(std::string(GetParam().line), std::regex("EVIL"), "'" + evil + "'");
    const Outcome outcome = shop.run(line);
    EXPECT_EQ(unfit(outcome.out), "") << outcome.out;
    EXPECT_EQ(unfit(outcome.err), "") << outcome.err;
    EXPECT_NE((outcome.out + outcome.err).find(GetParam().shows), std::string::npos)
        << outcome.out << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(
    , Terminal,
    ::testing::Values(Case{"Verb", "corvid EVIL"}, Case{"VerbToExplain", "corvid help EVIL"},
                      Case{"Option", "corvid info --EVIL clip.mxf"},
                      Case{"OptionWithAValue", "corvid info --json=EVIL clip.mxf"},
                      Case{"OptionBeforeTheVerb", "corvid --EVIL info clip.mxf"},
                      Case{"ShortOption", "corvid info -EVIL clip.mxf"},
                      Case{"TooManyArguments", "corvid from-xml evil.xml EVIL -o x"},
                      Case{"Partition", "corvid to-xml evil.mxf --partition EVIL"},
                      Case{"References", "corvid to-xml evil.mxf --references EVIL"},
                      Case{"Encoding", "corvid to-xml evil.mxf --encoding EVIL"},
                      Case{"Start", "corvid to-xml evil.mxf --start EVIL", "InstanceUID"},
                      Case{"Kag", "corvid from-xml evil.xml -o out.mxf --kag EVIL"},
                      Case{"MissingClip", "corvid to-xml EVIL"},
                      Case{"StartOfJson", "corvid to-json evil.mxf --start EVIL", "InstanceUID"},
                      Case{"MissingClipOfJson", "corvid to-json EVIL"},
                      Case{"MissingClipOfInfo", "corvid info EVIL"},
                      Case{"MissingClipOfInfoInJson", "corvid info --json EVIL"},
                      Case{"MissingClipOfCheck", "corvid check EVIL EVIL"},
                      Case{"MissingClipOfCheckInJson", "corvid check EVIL --json"},
                      Case{"MissingDocument", "corvid from-xml EVIL -o out.mxf"},
                      Case{"MissingDictionary", "corvid info evil.mxf --dictionary EVIL"},
                      Case{"OutputInAMissingFolder", "corvid to-xml evil.mxf -o EVIL/out.xml"},
                      Case{"OutputThatIsTheInput", "cp evil.mxf EVIL; corvid to-xml EVIL -o EVIL"},
                      Case{"OutputOntoAClip", "cp evil.mxf EVIL; corvid from-xml evil.xml -o EVIL; "
                                              "corvid to-xml evil.mxf -o EVIL"},
                      Case{"FolderOfSchemas", "corvid schema -o EVIL"},
                      Case{"FolderOfSchemasThatIsAFile", "touch EVIL; corvid schema -o EVIL"},
                      Case{"Info", "corvid info evil.mxf"},
                      Case{"InfoInJson", "corvid info --json evil.mxf"},
                      Case{"InfoOfAFile", "cp sample.mxf EVIL; corvid info EVIL"},
                      Case{"InfoOfSeveralFiles", "cp sample.mxf EVIL; corvid info EVIL evil.mxf"},
                      Case{"InfoOfAll", "cp evil.mxf EVIL; corvid info --all --labels EVIL"},
                      Case{"InfoOfAFileInJson", "cp sample.mxf EVIL; corvid info --json EVIL"},
                      Case{"Check", "cp evil.mxf EVIL; corvid check EVIL evil.mxf"},
                      Case{"CheckInJson", "cp evil.mxf EVIL; corvid check EVIL evil.mxf --json"},
                      Case{"BrokenDocument", "corvid from-xml broken.xml -o out.mxf", "broken.xml"},
                      Case{"UnknownNamespace", "corvid from-xml uri.xml -o out.mxf "},
                      Case{"Value", "corvid from-xml label.xml -o out.mxf"},
                      Case{"ValueThatIsNotValid", "corvid from-xml value.xml -o out.mxf "},
                      Case{"BrokenDictionary", "corvid info evil.mxf --dictionary broken.dict"},
                      Case{"Label", "corvid dictionary EVIL"},
                      Case{"LabelInJson", "corvid dictionary EVIL --json"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(MessagesOnATerminal, nameAFileOnce) {
    EXPECT_EQ(Workshop().run("corvid info \"$(printf 'a\\377')\"").err,
              "corvid: a\\xff: can't open: No such file or directory\n");
}

} // namespace
