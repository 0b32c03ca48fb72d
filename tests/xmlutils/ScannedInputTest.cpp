#include "host/xmlutils/ScannedInput.h"

#include "tests/xmlutils/Collisions.h"
#include "tests/xmlutils/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <xercesc/sax/SAXParseException.hpp>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A root with something of each name in it.
std::string each(const std::string& before, const std::vector<std::string>& names,
                 const std::string& behind) {
    std::string text = "<r>";
    for (const std::string& name : names) {
        text += before + name + behind;
    }
    return text + "</r>";
}

std::string join(const std::vector<std::string>& names, const std::string& behind) {
    std::string text;
    for (const std::string& name : names) {
        text += name + behind;
    }
    return text;
}

std::string asReferences(const std::string& text) {
    std::string references;
    for (const char character : text) {
        references += "&#" + std::to_string(static_cast<int>(character)) + ";";
    }
    return references;
}

struct Attack {
    const char* name;
    std::string (*document)(const std::vector<std::string>& names);
};
void PrintTo(const Attack& value, std::ostream* to) { *to << value.name; }

using Names = const std::vector<std::string>&;

const Attack attacks[] = {
    {"Elements", [](Names names) { return each("<", names, "/>"); }},
    {"Attributes", [](Names names) { return each("<a ", names, "=''/>"); }},
    {"AttributesOfATag", [](Names names) { return "<r " + join(names, "='' ") + "/>"; }},
    {"Prefixes", [](Names names) { return each("<a xmlns:", names, "='u'/>"); }},
    {"Namespaces", [](Names names) { return each("<a xmlns='", names, "'/>"); }},
    {"UnusedNamespaces",
     [](Names names) { return each("<p:a xmlns:p='u' xmlns='", names, "'/>"); }},
    {"NamespacesAsReferences",
     [](Names names) {
         std::vector<std::string> references;
         for (const std::string& name : names) {
             references.push_back(asReferences(name));
         }
         return each("<a xmlns='", references, "'/>");
     }},
};

class CollidingNames : public ::testing::TestWithParam<Attack> {};

TEST_P(CollidingNames, areRefused) {
    EXPECT_EQ(loadingError(GetParam().document(collidingNames(32))), "");
    const std::string error = loadingError(GetParam().document(collidingNames(1000)));
    EXPECT_THAT(error, StartsWith("line 1, column "));
    EXPECT_THAT(error, HasSubstr(" have the same place in a hash table of Xerces-C, expected at "
                                 "most "));
}

TEST_P(CollidingNames, areNotWhatOtherNamesAre) {
    EXPECT_EQ(loadingError(GetParam().document(plainNames(1000, 20))), "");
}

INSTANTIATE_TEST_SUITE_P(, CollidingNames, ::testing::ValuesIn(attacks),
                         [](const auto& test) { return test.param.name; });

const std::string collision = each("<", collidingNames(100), "/>");
const std::string refusal = "names and namespaces have the same place";

struct Encoded {
    const char* name;
    std::string bytes;
};
void PrintTo(const Encoded& value, std::ostream* to) { *to << value.name; }

std::string declaring(const std::string& encoding) {
    return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

class ScansEncoding : public ::testing::TestWithParam<Encoded> {};

TEST_P(ScansEncoding, fromABuffer) {
    EXPECT_THAT(loadingError(GetParam().bytes), HasSubstr(refusal));
}

TEST_P(ScansEncoding, fromAFile) {
    const TemporaryFile file(GetParam().bytes);
    const Parser parser = makeParser();
    try {
        loadDocumentFromFile(file.path().c_str(), *parser);
        ADD_FAILURE() << "not refused";
    } catch (const xercesc::SAXParseException& error) {
        EXPECT_THAT(utf8(error.getMessage()), HasSubstr(refusal));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , ScansEncoding,
    ::testing::Values(
        Encoded{"Utf8", collision}, Encoded{"Utf8WithMark", "\xEF\xBB\xBF" + collision},
        Encoded{"Latin1", declaring("ISO-8859-1") + "<!--\xE9-->" + collision},
        Encoded{"LowFirst", inUnits(collision, 2, false)},
        Encoded{"HighFirst", inUnits(collision, 2, true)},
        Encoded{"LowFirstWithMark", "\xFF\xFE" + inUnits(collision, 2, false)},
        Encoded{"HighFirstWithMark", "\xFE\xFF" + inUnits(collision, 2, true)},
        Encoded{"LowFirstThatSaysLatin1", inUnits(declaring("ISO-8859-1") + collision, 2, false)},
        Encoded{"FourBytes", inUnits(declaring("UCS-4") + collision, 4, true)},
        Encoded{"FourBytesThenOne", inUnits(declaring("ISO-8859-1"), 4, false) + collision},
        Encoded{"OneByteThenTwo", declaring("UTF-16BE") + inUnits(collision, 2, true)}),
    [](const auto& test) { return test.param.name; });

std::string attributes(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i != count; ++i) {
        text += " x" + std::to_string(i) + "=''";
    }
    return text;
}

TEST(ScannedInput, refusesATagBeforeItsEnd) {
    const std::string tag = "<a" + attributes(maximumOpenAttributes) + " y";
    EXPECT_EQ(loadingError("<r>\n\r\n  " + tag + "=''" + attributes(1000000)),
              "line 3, column " + std::to_string(3 + tag.size()) +
                  ": element a and those around it have 1025 attributes, expected at most 1024");
}

TEST(ScannedInput, refusesATagAfterBlocksOfOtherThings) {
    for (const std::size_t size : {40000u, 48u * 1024, 100000u}) {
        const std::string text = "<r>" + std::string(size, '\n') + collision.substr(3);
        EXPECT_THAT(loadingError(text),
                    StartsWith("line " + std::to_string(size + 1) + ", column "))
            << size;
        EXPECT_THAT(loadingError(text), HasSubstr(refusal)) << size;
    }
}

TEST(ScannedInput, leavesAnEarlierErrorToTheParser) {
    const std::string error = loadingError("<r>\n<b></c>");
    EXPECT_THAT(error, StartsWith("line 2, column "));
    EXPECT_EQ(loadingError("<r>\n<b></c>" + std::string(200, ' ') + collision), error);
    EXPECT_EQ(loadingError("<r>\n<b></c>" + std::string(200000, ' ') + collision), error);
}

TEST(ScannedInput, leavesADocumentTypeToTheParser) {
    EXPECT_THAT(loadingError("<!DOCTYPE r [<!ELEMENT r ANY>]>" + collision),
                HasSubstr("document type found, expected none"));
}

TEST(ScannedInput, leavesTheParserUsable) {
    const Parser parser = makeParser();
    EXPECT_THROW(load(collision, *parser), xercesc::SAXParseException);
    EXPECT_EQ(meaningOf(*load("<a/>", *parser)), "\nstart {}a\nend");
    EXPECT_THROW(load(collision, *parser), xercesc::SAXParseException);
}

TEST(ScannedInput, overlooksWhatIsNoTag) {
    for (const auto& [before, behind] : {std::pair("<!--<", "/>-->"),
                                         {"<![CDATA[<", "/>]]>"},
                                         {"<?p <", "?>"},
                                         {"<?", "?>"},
                                         {"<a b='", "'/>"},
                                         {"&lt;", "/>"},
                                         {"", " "}}) {
        EXPECT_EQ(loadingError(each(before, collidingNames(1000), behind)), "") << before;
    }
}

} // namespace
} // namespace Corvid::XMLUtils
