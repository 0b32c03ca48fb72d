#include "tests/tool/RunCommand.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sstream>

namespace Corvid::Testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::string identifier(unsigned number) {
    return "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.0" + std::to_string(number);
}

/// A document with one of everything that can be wrong.
std::string rightDocument() {
    return "<?xml version='1.0'?><?corvid format='1'?>\n"
           "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
           "xmlns:types='urn:SMPTE:Types:MXF' xmlns:groups='urn:SMPTE:Groups:MXF' "
           "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:schemaLocation='a b'>\n"
           "<s377m:Preface rp210:InstanceUID='" +
           identifier(1) +
           "'>\n"
           "<rp210:OperationalPattern>06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00"
           "</rp210:OperationalPattern>\n"
           "<rp210:FileLastModified><types:Year>2024</types:Year><types:Month>2</types:Month>"
           "<types:Day>29</types:Day><types:Hour>23</types:Hour><types:Minute>59</types:Minute>"
           "<types:Second>59</types:Second><types:mSec4>249</types:mSec4>"
           "</rp210:FileLastModified>\n"
           "<rp210:ContentStorageObject><s377m:ContentStorage_REF types:TargetInstance='" +
           identifier(2) +
           "'/></rp210:ContentStorageObject>\n"
           "</s377m:Preface>\n"
           "<s377m:ContentStorage rp210:InstanceUID='" +
           identifier(2) +
           "'/>\n"
           "<s377m:TimelineTrack rp210:InstanceUID='" +
           identifier(3) +
           "'>\n"
           "<rp210:TrackID> +2 <!-- a comment --></rp210:TrackID>\n"
           "<rp210:TrackName><![CDATA[Picture]]> 1</rp210:TrackName>\n"
           "<rp210:EditRate><types:Numerator>25</types:Numerator>"
           "<types:Denominator>1</types:Denominator></rp210:EditRate>\n"
           "</s377m:TimelineTrack>\n"
           "<s377m:CDCIDescriptor rp210:InstanceUID='" +
           identifier(4) +
           "'>\n"
           "<rp210:VideoLineMap><rp210:Element>7</rp210:Element></rp210:VideoLineMap>\n"
           "<rp210:SignalStandard>1</rp210:SignalStandard>\n"
           "</s377m:CDCIDescriptor>\n"
           "</s377m:MetadataSets>\n";
}

struct Mistake {
    const char* name;
    const char* there; ///< a text of the document
    const char* wrong; ///< that takes its place
    const char* says;
};
void PrintTo(const Mistake& c, std::ostream* out) { *out << c.name; }

const std::vector<Mistake>& mistakes() {
    static const std::vector<Mistake> all = {
        {"UnknownProperty", "<rp210:TrackName>", "<rp210:TrackNmae/><rp210:TrackName>",
         "line 11, column 1: /s377m:MetadataSets/s377m:TimelineTrack/rp210:TrackNmae: is no "
         "property that the dictionary knows; the nearest is TrackName"},
        {"PropertyOfAnotherNamespace", "<rp210:TrackName>", "<types:TrackName/><rp210:TrackName>",
         "types:TrackName: is no property that the dictionary knows; that name is in the namespace "
         "urn:SMPTE:RP210, here it is in 'urn:SMPTE:Types:MXF'"},
        {"PropertyOfAnotherSet", "<rp210:TrackName>", "<rp210:SampleRate/><rp210:TrackName>",
         "rp210:SampleRate: is no property of s377m:TimelineTrack"},
        {"PropertyTwice", "<rp210:TrackName>", "<rp210:TrackName/><rp210:TrackName>",
         "rp210:TrackName: is in its set more than once, expected once"},
        {"UnknownSet", "<s377m:ContentStorage ", "<s377m:ContentStorge/><s377m:ContentStorage ",
         "/s377m:MetadataSets/s377m:ContentStorge: is no set that the dictionary knows; the "
         "nearest "
         "is ContentStorage"},
        {"UnknownAttribute", "<rp210:TrackName>", "<rp210:TrackName lang='en'>",
         "rp210:TrackName/@lang: is no attribute of this element, expected none"},
        {"TextBetweenSets", "<s377m:ContentStorage ", "here <s377m:ContentStorage ",
         "/s377m:MetadataSets: has text 'here' between sets, expected none"},
        {"TextBetweenProperties", "<rp210:TrackName>", "here<rp210:TrackName>",
         "/s377m:TimelineTrack: has text 'here' between its elements, expected none"},
        {"InstructionAfterTheStart", "<s377m:ContentStorage ",
         "<?corvid form text='terminated'?><s377m:ContentStorage ",
         "line 8, column 1: processing instruction corvid is after the start of the root, expected "
         "in front of it"},
        {"NoNumber", "> +2 <", ">wide<",
         "rp210:TrackID: 'wide', expected a whole number from 0 to 4294967295"},
        {"Fraction", "> +2 <", ">1.5<", "rp210:TrackID: '1.5', expected a whole number"},
        {"NegativeNumber", "> +2 <", ">-1<", "rp210:TrackID: '-1', expected a whole number"},
        {"NumberOutOfRange", "> +2 <", ">99999999999<",
         "rp210:TrackID: '99999999999', expected a whole number"},
        {"HexadecimalNumber", "> +2 <", ">20x4<", "rp210:TrackID: '20x4', expected a whole number"},
        {"NothingForANumber", "> +2 <", "><",
         "rp210:TrackID: is empty, expected a whole number from 0 to 4294967295"},
        {"MissingPart", "<types:Denominator>1</types:Denominator>", "",
         "rp210:EditRate: expected the part types:Denominator"},
        {"PartTwice", "<types:Denominator>",
         "<types:Denominator>1</types:Denominator><types:Denominator>",
         "rp210:EditRate/types:Denominator: is there twice, expected once"},
        {"UnknownPart", "<types:Denominator>", "<types:Rest>1</types:Rest><types:Denominator>",
         "rp210:EditRate/types:Rest: is no part of this value"},
        {"PartOutOfRange", "<types:mSec4>249<", "<types:mSec4>256<",
         "types:mSec4: '256', expected a whole number from 0 to 255"},
        {"ShortIdentifier", "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00",
         "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01",
         "rp210:OperationalPattern: '06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01', expected 16 "
         "pairs of hexadecimal digits with full stops between them"},
        {"ItemOfAnotherName", "<rp210:Element>7</rp210:Element>", "<rp210:Item>7</rp210:Item>",
         "rp210:VideoLineMap/rp210:Item: expected an item of the collection"},
        {"NoIdentifier", " rp210:InstanceUID='00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.04'", "",
         "/s377m:CDCIDescriptor: has no rp210:InstanceUID, expected one"},
        {"BrokenIdentifier", "InstanceUID='00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.04'",
         "InstanceUID='4'", "@rp210:InstanceUID: '4', expected 16 pairs of hexadecimal digits"},
        {"LinkToNothing", "TargetInstance='00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02'",
         "TargetInstance='00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.09'",
         "s377m:Preface/rp210:ContentStorageObject/s377m:ContentStorage_REF: no set of the "
         "document "
         "has this identifier"},
        {"LinkOfAnUnknownClass", "<s377m:ContentStorage_REF ", "<s377m:Storage_REF ",
         "s377m:Storage_REF: is no set that the dictionary knows"},
    };
    return all;
}

std::string withMistake(std::string document, const Mistake& mistake) {
    const auto place = document.find(mistake.there);
    EXPECT_NE(place, std::string::npos) << mistake.name;
    return document.replace(place, std::string(mistake.there).size(), mistake.wrong);
}

class DocumentMistake : public ::testing::TestWithParam<Mistake> {};

TEST_P(DocumentMistake, isRefusedWithItsPlace) {
    const Workshop shop;
    shop.write("doc.xml", withMistake(rightDocument(), GetParam()));
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, ::testing::StartsWith("corvid: doc.xml: line "));
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().says));
    EXPECT_FALSE(shop.has("out.mxf"));
}

INSTANTIATE_TEST_SUITE_P(, DocumentMistake, ::testing::ValuesIn(mistakes()),
                         [](const auto& each) { return std::string(each.param.name); });

/// The messages of from-xml about a document, but for the number of the line, and that by itself.
std::vector<std::pair<std::size_t, std::string>> messagesAbout(const std::string& document) {
    const Workshop shop;
    shop.write("doc.xml", document);
    std::istringstream lines(shop.run("corvid from-xml doc.xml -o out.mxf").err);
    const std::string front = "corvid: doc.xml: line ";
    std::vector<std::pair<std::size_t, std::string>> messages;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.substr(0, front.size()), front);
        std::size_t digits = 0;
        const std::size_t number = std::stoul(line.substr(front.size()), &digits);
        messages.emplace_back(number, line.substr(front.size() + digits));
    }
    return messages;
}

TEST(DocumentMistakes, areReportedAllAtOnceAsEachAlone) {
    // The sets of a document with one of the mistakes each, one after another.
    const std::string end = "</s377m:MetadataSets>\n";
    const std::string right = rightDocument();
    const auto sets = right.find("<s377m:Preface");
    const auto linesIn = [](const std::string& text) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    };
    std::string all = right.substr(0, sets);
    std::vector<std::pair<std::size_t, std::string>> expected;
    std::size_t number = 10;
    for (const Mistake& mistake : mistakes()) {
        const std::string document = withMistake(right, mistake);
        const auto alone = messagesAbout(document);
        ASSERT_FALSE(alone.empty()) << mistake.name;
        for (const auto& [line, message] : alone) {
            expected.emplace_back(line + linesIn(all) - linesIn(right.substr(0, sets)), message);
        }
        std::string own = document.substr(sets, document.size() - sets - end.size());
        const std::string shared = "='00.";
        for (auto at = own.find(shared); at != std::string::npos; at = own.find(shared, at)) {
            own.replace(at + 2, 2, std::to_string(number));
        }
        ++number;
        all += own;
    }
    ASSERT_GE(mistakes().size(), 20U);
    EXPECT_THAT(messagesAbout(all + end), ::testing::ElementsAreArray(expected));
}

TEST(DocumentMistakes, areCountedBeyondAHundred) {
    const Workshop shop;
    std::string sets;
    for (int i = 0; i != 130; ++i) {
        sets += "<s377m:Nothing/>";
    }
    std::string document = rightDocument();
    document.insert(document.find("</s377m:MetadataSets>"), sets);
    shop.write("doc.xml", document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 101);
    EXPECT_THAT(outcome.err, HasSubstr("corvid: doc.xml: 30 more mistakes\n"));
}

TEST(DocumentMistakes, nameAPropertyOnce) {
    const Workshop shop;
    const std::string there = "<![CDATA[Picture]]> 1";
    std::string document = rightDocument();
    document.replace(document.find(there), there.size(), std::string(40000, 'x'));
    shop.write("doc.xml", document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("/rp210:TrackName: value of 80000 bytes"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("rp210:TrackName: rp210:TrackName")));
}

TEST(DocumentOfPeople, isReadWithWhatItMayHave) {
    const Workshop shop;
    shop.write("doc.xml", rightDocument());
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    const std::string back = shop.run("corvid to-xml out.mxf").out;
    EXPECT_THAT(back, HasSubstr("<rp210:TrackID>2</rp210:TrackID>"));
    EXPECT_THAT(back, HasSubstr("<rp210:TrackName>Picture 1</rp210:TrackName>"));
}

TEST(DocumentOfPeople, mayHaveATimeThatNoCalendarHas) {
    const Workshop shop;
    std::string document = rightDocument();
    document.replace(document.find("<types:Day>29<"), 14, "<types:Day>30<");
    shop.write("doc.xml", document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("line 5, column 1: /s377m:MetadataSets/s377m:Preface/"
                                       "rp210:FileLastModified: no calendar has day 30 "
                                       "[implausible-value]"));
    EXPECT_EQ(shop.run("corvid from-xml --warnings-as-errors doc.xml -o none.mxf").status, 1);
}

std::string track(const std::string& name) {
    return "<s377m:TimelineTrack rp210:InstanceUID='" + identifier(7) + "'><rp210:TrackName>" +
           name + "</rp210:TrackName></s377m:TimelineTrack>\n";
}
std::string darkSet(const std::string& byte) {
    return "<groups:FloatingDarkMetadata><groups:DarkMetadata groups:BEROctetCount='4' "
           "groups:Key='06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00'>"
           "3C0A0010000000000000000000000000000000073C080001" +
           byte + "</groups:DarkMetadata></groups:FloatingDarkMetadata>\n";
}

struct Copies {
    const char* name;
    std::string sets;
    const char* says;
};
void PrintTo(const Copies& c, std::ostream* out) { *out << c.name; }

class DocumentWithCopies : public ::testing::TestWithParam<Copies> {};

TEST_P(DocumentWithCopies, isRefusedAtTheOneThatDiffers) {
    const Workshop shop;
    std::string document = rightDocument();
    document.insert(document.find("</s377m:MetadataSets>"), GetParam().sets);
    shop.write("doc.xml", document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "corvid: doc.xml: " + std::string(GetParam().says) +
                               ": another set has this identifier and differs\n");
}

INSTANTIATE_TEST_SUITE_P(
    , DocumentWithCopies,
    ::testing::Values(Copies{"Second", track("a") + track("b"),
                             "line 19, column 1: set TimelineTrack "
                             "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07"},
                      Copies{"Third", track("a") + track("a") + track("b"),
                             "line 20, column 1: set TimelineTrack "
                             "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07"},
                      Copies{"ThirdDarkSet", darkSet("01") + darkSet("01") + darkSet("02"),
                             "line 20, column 30: set 06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03."
                             "00 00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07"}),
    [](const auto& each) { return std::string(each.param.name); });

struct Front {
    const char* name;
    const char* instructions; ///< in place of those of the document
};
void PrintTo(const Front& c, std::ostream* out) { *out << c.name; }

class DocumentWithoutInstructions : public ::testing::TestWithParam<Front> {};

TEST_P(DocumentWithoutInstructions, isReadWithAWarning) {
    const Workshop shop;
    std::string document = rightDocument();
    const std::string there = "<?corvid format='1'?>";
    document.replace(document.find(there), there.size(), GetParam().instructions);
    shop.write("doc.xml", document);
    for (const char* options : {"", " --lenient"}) {
        const std::string line = "corvid from-xml doc.xml" + std::string(options);
        const Outcome outcome = shop.run(line + " -o out.mxf");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.err,
                    HasSubstr("corvid: doc.xml: warning: the document has no processing "
                              "instructions of corvid, so what XML has no place for is lost"));
        EXPECT_THAT(outcome.err, HasSubstr(" [no-instructions]\n"));
        EXPECT_EQ(shop.run(line + " --warnings-as-errors -o none.mxf").status, 1);
        EXPECT_FALSE(shop.has("none.mxf"));
    }
}

INSTANTIATE_TEST_SUITE_P(, DocumentWithoutInstructions,
                         ::testing::Values(Front{"None", ""}, Front{"AComment", "<!-- corvid -->"},
                                           Front{"OthersOnly", "<?xml-stylesheet href='a'?>"}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(DocumentOfPeople, isRefusedInAnotherFormat) {
    const Workshop shop;
    std::string document = rightDocument();
    document.replace(document.find("format='1'"), 10, "format='2'");
    shop.write("doc.xml", document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "corvid: doc.xml: line 1: processing instruction corvid format: format "
                           "2, expected 1, which is what this version of corvid knows\n");
}

TEST(DocumentOfPeople, mayHaveOtherPrefixes) {
    const Workshop shop;
    std::string document = rightDocument();
    shop.write("doc.xml", document);
    for (const auto& [prefix, other] :
         {std::pair("s377m", "ns0"), {"rp210", "s377m"}, {"types", "t"}}) {
        for (std::string::size_type at = 0;
             (at = document.find(prefix, at)) != std::string::npos;) {
            document.replace(at, std::string(prefix).size(), other);
            at += std::string(other).size();
        }
    }
    shop.write("renamed.xml", document);
    ASSERT_EQ(shop.run("corvid from-xml doc.xml -o a.mxf").status, 0);
    const Outcome outcome = shop.run("corvid from-xml renamed.xml -o b.mxf");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(shop.read("a.mxf"), shop.read("b.mxf"));
}

} // namespace
} // namespace Corvid::Testing
