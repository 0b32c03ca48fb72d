#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

/// Documents that are no XML, or in an encoding that they do not name.
namespace Corvid::Testing {
namespace {

using ::testing::HasSubstr;

const std::string before =
    "<?corvid format=\"1\"?>\n"
    "<s377m:MetadataSets xmlns:s377m=\"urn:SMPTE:S377M\" xmlns:rp210=\"urn:SMPTE:RP210\">\n"
    "<s377m:Preface rp210:InstanceUID=\"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01\">"
    "<rp210:OperationalPattern>06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00"
    "</rp210:OperationalPattern></s377m:Preface>\n"
    "<s377m:TimelineTrack rp210:InstanceUID=\"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02\">\n"
    "<rp210:TrackName>";
const std::string after = "</rp210:TrackName></s377m:TimelineTrack></s377m:MetadataSets>\n";

std::string named(const std::string& text) { return before + text + after; }

/// ASCII as UTF-16, in which "$" stands for a code unit.
std::string utf16(const std::string& text, char16_t unit, bool isBigEndian) {
    std::string bytes;
    const auto add = [&](char16_t each) {
        const char high = static_cast<char>(each >> 8), low = static_cast<char>(each & 0xFF);
        bytes += isBigEndian ? std::string{high, low} : std::string{low, high};
    };
    add(0xFEFF);
    for (const char each : text) {
        add(each == '$' ? unit : static_cast<char16_t>(each));
    }
    return bytes;
}

struct Malformed {
    const char* name;
    std::string document;
    const char* says;
};
void PrintTo(const Malformed& c, std::ostream* out) { *out << c.name; }

class MalformedDocument : public ::testing::TestWithParam<Malformed> {};

TEST_P(MalformedDocument, isRefusedWithItsPlace) {
    const Workshop shop;
    shop.write("doc.xml", GetParam().document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, std::string("corvid: doc.xml: ") + GetParam().says + "\n");
}

constexpr const char* notAllowed =
    "line 5, column 19: expected other markup here, or a character that XML allows and that the "
    "encoding of the document has";
constexpr const char* halfOfAPair = "line 5, column 19: half of a surrogate pair, expected both";

INSTANTIATE_TEST_SUITE_P(
    , MalformedDocument,
    ::testing::Values(
        Malformed{"ControlCharacter", named("a\x01"), notAllowed},
        Malformed{"Zero", named(std::string("a\0", 2)), notAllowed},
        Malformed{"Latin1AsUtf8", named("a\xE9"), notAllowed},
        Malformed{"FirstHalfLittleEndian", utf16(named("a$b"), 0xD800, false), halfOfAPair},
        Malformed{"FirstHalfBigEndian", utf16(named("a$b"), 0xDBFF, true), halfOfAPair},
        Malformed{"SecondHalf", utf16(named("$b"), 0xDC00, true),
                  "line 5, column 18: half of a surrogate pair, expected both"},
        Malformed{"TextAfterTheRoot", named("a") + "b",
                  "line 6, column 1: expected nothing after the end of the root"},
        Malformed{"AnotherRoot", named("a") + "<b/>",
                  "line 6, column 1: expected nothing after the end of the root"},
        Malformed{"CutOffInATag", before + "a</rp210:Trac",
                  "line 5, column 19: the document ends in the midst of markup or of a character"},
        Malformed{"CutOffInText", before + "a",
                  "line 5, column 19: the document ends in the element 'rp210:TrackName'"}),
    [](const auto& each) { return std::string(each.param.name); });

/// A document of one element in its root, which declares one namespace.
std::string inRoot(const std::string& element, const std::string& declarations = "") {
    return "<s377m:MetadataSets xmlns:s377m=\"urn:SMPTE:S377M\"" + declarations + ">\n" + element +
           "</s377m:MetadataSets>";
}

INSTANTIATE_TEST_SUITE_P(
    Namespaces, MalformedDocument,
    ::testing::Values(
        Malformed{"UndeclaredPrefix", inRoot("<a:B/>"),
                  "line 2, column 1: the prefix of 'a:B' is declared nowhere, expected an "
                  "attribute 'xmlns:a' here or around it"},
        Malformed{"UndeclaredPrefixOfAnAttribute", inRoot("<s377m:B a:b=\"\"/>"),
                  "line 2, column 1: the prefix of 'a:b' is declared nowhere, expected an "
                  "attribute 'xmlns:a' here or around it"},
        Malformed{"PrefixOfAnElementThatHasEnded", inRoot("<a:B xmlns:a=\"urn:a\"/><a:C/>"),
                  "line 2, column 23: the prefix of 'a:C' is declared nowhere, expected an "
                  "attribute 'xmlns:a' here or around it"},
        Malformed{"PrefixKeptForDeclarations", inRoot("<xmlns:a/>"),
                  "line 2, column 1: the prefix of 'xmlns:a' is declared nowhere, expected "
                  "another: xmlns is for declarations"},
        Malformed{"TwoColons", inRoot("<s377m:a:b/>"),
                  "line 2, column 1: 's377m:a:b', expected a name with at most one colon, and a "
                  "name on both sides"},
        Malformed{"NothingBeforeTheColon", inRoot("<:a/>"),
                  "line 2, column 1: ':a', expected a name with at most one colon, and a name on "
                  "both sides"},
        Malformed{"NothingAfterTheColon", inRoot("<s377m:/>"),
                  "line 2, column 1: 's377m:', expected a name with at most one colon, and a name "
                  "on both sides"},
        Malformed{"DigitAfterTheColon", inRoot("<s377m:1/>"),
                  "line 2, column 1: 's377m:1', expected a name with at most one colon, and a name "
                  "on both sides"},
        Malformed{"AccentAfterTheColon", inRoot("<s377m:\xCC\x81/>"),
                  "line 2, column 1: 's377m:\xCC\x81', expected a name with at most one colon, and "
                  "a name on both sides"},
        Malformed{"ColonInAnInstruction", inRoot("<?a:b?>"),
                  "line 2, column 1: processing instruction 'a:b', expected a name without colon"},
        Malformed{"TwoAttributesOfOneName",
                  inRoot("<a b:c=\"\" d:c=\"\"/>", " xmlns:b=\"urn:b\" xmlns:d=\"urn:b\""),
                  "line 2, column 1: the attributes 'b:c' and 'd:c' of element a are the same, "
                  "expected one of them"},
        Malformed{"DeclarationOfXmlns", inRoot("", " xmlns:xmlns=\"urn:a\""),
                  "line 1, column 1: 'xmlns:xmlns' declares 'urn:a', expected the prefixes xml and "
                  "xmlns and their namespaces to be left alone"},
        Malformed{"DeclarationOfXml", inRoot("", " xmlns:xml=\"urn:a\""),
                  "line 1, column 1: 'xmlns:xml' declares 'urn:a', expected the prefixes xml and "
                  "xmlns and their namespaces to be left alone"},
        Malformed{"NamespaceOfXml", inRoot("", " xmlns:a=\"http://www.w3.org/XML/1998/namespace\""),
                  "line 1, column 1: 'xmlns:a' declares 'http://www.w3.org/XML/1998/namespace', "
                  "expected the prefixes xml and xmlns and their namespaces to be left alone"},
        Malformed{"NamespaceOfXmlns", inRoot("", " xmlns=\"http://www.w3.org/2000/xmlns/\""),
                  "line 1, column 1: 'xmlns' declares 'http://www.w3.org/2000/xmlns/', expected "
                  "the prefixes xml and xmlns and their namespaces to be left alone"},
        Malformed{"EmptyNamespace", inRoot("", " xmlns:a=\"\""),
                  "line 1, column 1: 'xmlns:a' is empty, expected a namespace"},
        Malformed{"DeclarationOfNothing", inRoot("", " xmlns:=\"urn:a\""),
                  "line 1, column 1: 'xmlns:' declares no prefix, expected a name without colon "
                  "after 'xmlns:'"},
        Malformed{"DeclarationOfTwo", inRoot("", " xmlns:a:b=\"urn:a\""),
                  "line 1, column 1: 'xmlns:a:b' declares no prefix, expected a name without colon "
                  "after 'xmlns:'"}),
    [](const auto& each) { return std::string(each.param.name); });

struct Encoded {
    const char* name;
    std::string document;
};
void PrintTo(const Encoded& c, std::ostream* out) { *out << c.name; }

class EncodedDocument : public ::testing::TestWithParam<Encoded> {};

TEST_P(EncodedDocument, hasTheCharactersThatTheMarkSays) {
    const Workshop shop;
    shop.write("doc.xml", GetParam().document);
    const Outcome outcome = shop.run("corvid from-xml doc.xml -o out.mxf");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(shop.run("corvid to-xml out.mxf").out, HasSubstr(">a\xC3\xA9<"));
}

const std::string mark = "\xEF\xBB\xBF";

INSTANTIATE_TEST_SUITE_P(
    , EncodedDocument,
    ::testing::Values(
        Encoded{"Utf8", named("a\xC3\xA9")}, Encoded{"Utf8WithMark", mark + named("a\xC3\xA9")},
        Encoded{"Utf8WithMarkThatSaysLatin1",
                mark + "<?xml version='1.0' encoding='ISO-8859-1'?>" + named("a\xC3\xA9")},
        Encoded{"Utf8WithMarkThatSaysUtf16",
                mark + "<?xml version='1.0' encoding='UTF-16'?>" + named("a\xC3\xA9")},
        Encoded{"Utf8WithoutHyphen", "<?xml version='1.0' encoding='utf8'?>" + named("a\xC3\xA9")},
        Encoded{"Utf8WithoutHyphenInCapitals",
                "<?xml version = \"1.0\" encoding = \"UTF8\" ?>" + named("a\xC3\xA9")},
        Encoded{"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?>" + named("a\xE9")},
        Encoded{"Utf16LittleEndian", utf16(named("a$"), 0xE9, false)},
        Encoded{"Utf16BigEndianThatSaysUtf8",
                utf16("<?xml version='1.0' encoding='UTF-8'?>" + named("a$"), 0xE9, true)}),
    [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace Corvid::Testing
