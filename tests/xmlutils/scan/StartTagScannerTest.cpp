#include "host/xmlutils/scan/StartTagScanner.h"

#include "tests/support/Paths.h"
#include "tests/xmlutils/scan/Tags.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;

struct Case {
    const char* name;
    std::string document;
    Tags tags;
};

const Case cases[] = {
    {"Plain", "<a><b x='1'/></a>", {"a", "b x"}},
    {"Nested", "<a\n><p:b\txmlns:p = \"u\"\r\n p:c='' ></p:b ></a >", {"a", "p:b xmlns:p=[u] p:c"}},
    {"EndOfTagInValues", "<a b='>' c=\"/>\" d='\"' e=\"'\"><f/></a>", {"a b c d e", "f"}},
    {"Comments",
     "<!----><!-- <x> - > -> --><a><!--<x y='--><b/><!-- ' --></a><!--<x/>-->",
     {"a", "b"}},
    {"CdataSections",
     "<a><![CDATA[<x>] ]> ]><x>]]]><b/><![CDATA[]]><c/><![CDATA[>]]></a>",
     {"a", "b", "c"}},
    {"ProcessingInstructions", "<?p <x> ?><?q?><a><?r <x a='?>'<?s > ?\?><b/></a>", {"a", "b"}},
    {"References", "<a x='&lt;&gt;&quot;&#62;'>&lt;x&gt;&#60;x></a>", {"a x"}},
    {"UriOfReferences",
     "<a xmlns='&#x61;&#98;&amp;&lt;&gt;&quot;&apos;&#x10FFFF;&#xE9;&#0065;&#10;&#9;'/>",
     {"a xmlns=[ab&<>\"'\xF4\x8F\xBF\xBF\xC3\xA9"
      "A\n\t]"}},
    {"UriOfWhiteSpace", "<a xmlns:p=' a\r\nb\rc\n\td\r\r\n'/>", {"a xmlns:p=[ a b c  d  ]"}},
    {"EmptyUri", "<a xmlns=''/>", {"a xmlns=[]"}},
    {"NoDeclarations", "<a xmlnsx='u' axmlns='v' xmln='w'/>", {"a xmlnsx axmlns xmln"}},
    {"NamesBeyondAscii",
     "<\xC3\xA9 \xE6\x96\x87='x' \xF0\x90\x80\x80=''/>",
     {"\xC3\xA9 \xE6\x96\x87 \xF0\x90\x80\x80"}},
    {"ByteOrderMark", "\xEF\xBB\xBF<a/>", {"a"}},
    {"Declaration", "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<a/>", {"a"}},
    {"DeclarationLike", "<?xmlx <x>?><a/>", {"a"}},
    {"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><\xE9 \xE8=''/>", {"\xC3\xA9 \xC3\xA8"}},
    {"LineEndsOfXml11",
     "<?xml version='1.1'?><a\xC2\x85"
     "b=''\xE2\x80\xA8xmlns='x\xC2\x85y\xE2\x80\xA8z\r\xC2\x85\r\xE2\x80\xA8&#x85;'/>",
     {"a b xmlns=[x y z   \xC2\x85]"}},
    {"NoLineEndsOfXml10",
     "<?xml version='1.0'?><a xmlns='x\xC2\x85\xE2\x80\xA8'/>",
     {"a xmlns=[x\xC2\x85\xE2\x80\xA8]"}},
};

void PrintTo(const Case& value, std::ostream* to) { *to << value.name; }

class ScansStartTags : public ::testing::TestWithParam<Case> {};

TEST_P(ScansStartTags, asTheParserDoes) {
    EXPECT_EQ(parsedTags(GetParam().document), GetParam().tags);
    EXPECT_EQ(scannedTags(GetParam().document, GetParam().document.size()), GetParam().tags);
}

TEST_P(ScansStartTags, ofADocumentInPieces) {
    const std::string& document = GetParam().document;
    // The XML declaration is in the first block, as it is for the parser.
    const bool declares = document.find("<?xml ") != std::string::npos;
    const std::size_t shortest = declares ? document.find("?>") + 2 : 8;
    for (std::size_t size = shortest; size < document.size(); ++size) {
        EXPECT_EQ(scannedTags(document, size), GetParam().tags) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(, ScansStartTags, ::testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

/// Scanned text by text, without a decoder.
TEST(StartTagScanner, findsTheSameInPiecesOfOneUnit) {
    struct Counter final : StartTagSink {
        bool startTag(std::u16string_view name) override { return note(u'<', name); }
        bool attribute(std::u16string_view name) override { return note(u' ', name); }
        bool namespaceUri(std::u16string_view uri) override { return note(u'=', uri); }
        bool endOfTag() override { return note(u'>', {}); }
        bool note(char16_t what, std::u16string_view text) {
            seen += what + std::u16string(text);
            return true;
        }
        std::u16string seen;
    };
    const std::u16string text =
        u"<a xmlns='u&amp;v' b='>'><!--<x>--><![CDATA[<x>]]><?<x>?><c/></a>";
    Counter whole, single;
    StartTagScanner(whole).scan(text);
    StartTagScanner scanner(single);
    for (const char16_t unit : text) {
        EXPECT_EQ(scanner.scan({&unit, 1}), 1u);
    }
    EXPECT_EQ(whole.seen, u"<a xmlns=u&v b><c>");
    EXPECT_EQ(single.seen, whole.seen);
}

TEST(StartTagScanner, endsAtADocumentType) {
    const std::string text = "<!DOCTYPE a [<!ELEMENT a ANY><?x <y>?>]><a/>";
    EXPECT_EQ(scannedTags(text, text.size()), Tags());
}

/// Where the parser meets an error it has seen no tag that the scanner has not.
void expectTheParsersTags(const std::string& document) {
    const Tags parsed = parsedTags(document);
    Tags scanned = scannedTags(document, document.size());
    ASSERT_GE(scanned.size(), parsed.size()) << document;
    scanned.resize(parsed.size());
    ASSERT_EQ(scanned, parsed) << document;
}

TEST(StartTagScanner, agreesWithTheParserUpToItsFirstError) {
    const std::string pieces[] = {
        "<",   ">",  "/",    "'",         "\"",   "=",     "!",      "-",  "[",     "]",
        "?",   "&",  ";",    " ",         "\n",   "\r",    "a",      ":",  "xmlns", "-->",
        "]]>", "?>", "<!--", "<![CDATA[", "<?p ", "&#60;", "<b x='", "'>", "</b>",  "\xC2\x85"};
    std::mt19937 random(1);
    const auto below = [&](std::size_t end) { return random() % end; };
    for (int i = 0; i != 20000; ++i) {
        std::string document = cases[below(std::size(cases))].document;
        for (std::size_t changes = 1 + below(3); changes != 0; --changes) {
            const std::size_t at = below(document.size());
            document.replace(at, below(3), pieces[below(std::size(pieces))]);
        }
        expectTheParsersTags(document);
    }
}

TEST(StartTagScanner, agreesWithTheParserAboutTheSeedsOfTheSearch) {
    for (const auto& entry : std::filesystem::directory_iterator(Corvid::Testing::sourceDir() /
                                                                 "fuzz" / "corpus" / "Xml")) {
        std::ifstream file(entry.path(), std::ios::binary);
        std::string document(std::istreambuf_iterator<char>(file), {});
        const bool isWide = document.substr(0, 2) == "\xFF\xFE";
        document.erase(0, isWide ? 2 : 0);
        const XMLCh* const encoding = isWide ? u"UTF-16LE" : nullptr;
        const Tags parsed = parsedTags(document, encoding);
        EXPECT_GT(parsed.size(), 3U) << entry.path();
        EXPECT_EQ(scannedTags(document, 48 * 1024, encoding), parsed) << entry.path();
        EXPECT_EQ(scannedTags(document, 1001, encoding), parsed) << entry.path();
    }
}

} // namespace
} // namespace Corvid::XMLUtils
