#include "host/xmlutils/LoadDocument.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/CleanDocument.h"
#include "tests/xmlutils/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <xercesc/sax/SAXParseException.hpp>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;

/// 7-bit text as UTF-16.
std::string utf16(std::string_view text, bool highFirst) { return inUnits(text, 2, highFirst); }

struct Encoded {
    const char* name;
    std::string bytes;
};

const std::string plain = "<a><b>x</b></a>";
const std::string liesUtf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + plain;
const std::string says16 = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + plain;
const std::string says16BE = "<?xml version=\"1.0\" encoding=\"UTF-16BE\"?>" + plain;
const std::string low = "\xFF\xFE";
const std::string high = "\xFE\xFF";

const Encoded encodings[] = {
    {"Utf8", plain},
    {"Utf8WithMark", "\xEF\xBB\xBF" + plain},
    {"Utf8WithMarkAndDeclaration", "\xEF\xBB\xBF" + liesUtf8},
    {"Utf8Declared", liesUtf8},
    {"LowFirst", utf16(plain, false)},
    {"HighFirst", utf16(plain, true)},
    {"LowFirstWithMark", low + utf16(plain, false)},
    {"HighFirstWithMark", high + utf16(plain, true)},
    {"LowFirstDeclaredUtf8", utf16(liesUtf8, false)},
    {"HighFirstDeclaredUtf8", utf16(liesUtf8, true)},
    {"LowFirstWithMarkDeclaredUtf8", low + utf16(liesUtf8, false)},
    {"HighFirstWithMarkDeclaredUtf8", high + utf16(liesUtf8, true)},
    {"LowFirstDeclaredUtf16", utf16(says16, false)},
    {"HighFirstDeclaredUtf16", utf16(says16, true)},
    {"LowFirstDeclaredHighFirst", utf16(says16BE, false)},
    {"LowFirstAfterBlank", utf16("\n" + plain, false)},
    {"HighFirstAfterBlank", utf16("\t " + plain, true)},
};

void PrintTo(const Encoded& value, std::ostream* to) { *to << value.name; }

std::filesystem::path temporaryFile(const std::string& name) {
    return std::filesystem::temp_directory_path() /
           std::filesystem::u8path("corvid-" + std::to_string(::getpid()) + "-" + name);
}

Utf16Text pathText(const std::filesystem::path& path) {
    return Platform::fromUtf8(path.u8string());
}

class Loads : public ::testing::TestWithParam<Encoded> {};

TEST_P(Loads, fromABuffer) {
    const Parser parser = makeParser();
    EXPECT_EQ(meaningOf(*load(GetParam().bytes, *parser)),
              "\nstart {}a\nstart {}b\ntext x\nend\nend");
}

TEST_P(Loads, fromAFile) {
    const auto path = temporaryFile(std::string("\xC3\xA9-\xE2\x82\xAC-") + GetParam().name);
    std::ofstream(path, std::ios::binary) << GetParam().bytes;
    const Parser parser = makeParser();
    EXPECT_EQ(meaningOf(*loadDocumentFromFile(pathText(path).c_str(), *parser)),
              "\nstart {}a\nstart {}b\ntext x\nend\nend");
    std::filesystem::remove(path);
}

INSTANTIATE_TEST_SUITE_P(, Loads, ::testing::ValuesIn(encodings),
                         [](const auto& test) { return test.param.name; });

TEST(LoadDocument, resolvesNamespaces) {
    const Parser parser = makeParser();
    EXPECT_EQ(meaningOf(*load("<p:a xmlns:p='urn:p' p:x='1' y='2'/>", *parser)),
              "\nstart {urn:p}a {urn:p}x=[1] {}y=[2]\nend");
}

TEST(LoadDocument, overlooksHalfACodeUnitBehindTheDocument) {
    EXPECT_EQ(loadingError(utf16("<a/>", false) + "x"), "");
    EXPECT_NE(loadingError(utf16("<a></a", false) + ">"), "");
}

TEST(LoadDocument, keepsWhiteSpace) {
    const Parser parser = makeParser();
    EXPECT_EQ(meaningOf(*load("<a>\n <b/>\n</a>", *parser)),
              "\nstart {}a\ntext \n \nstart {}b\nend\ntext \n\nend");
}

struct Texts {
    const char* name;
    std::string inside; ///< of the root
};
void PrintTo(const Texts& value, std::ostream* to) { *to << value.name; }

class LoadsClean : public ::testing::TestWithParam<Texts> {};

/// Nodes as they are, neighbouring texts and all.
std::string nodesOf(const xercesc::DOMNode& top) {
    std::string nodes;
    for (const auto* node = top.getFirstChild(); node != nullptr; node = node->getNextSibling()) {
        nodes += std::to_string(node->getNodeType()) + ' ' + utf8(node->getNodeName()) + ' ';
        nodes += node->getNodeValue() == nullptr ? "" : '[' + utf8(node->getNodeValue()) + ']';
        nodes += " {" + nodesOf(*node) + "}\n";
    }
    return nodes;
}

TEST_P(LoadsClean, asIfItWereCleanedAfterwards) {
    for (const bool comments : {true, false}) {
        const std::string text = "<a xmlns:p='urn:p'>" + GetParam().inside + "</a>";
        const Parser cleaning = makeParser();
        xercesc::DOMDocument* const expected = load(text, *cleaning);
        cleanEmptyTextNodes(*expected);
        const Parser parser = makeParser();
        parser->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMComments, comments);
        EXPECT_EQ(nodesOf(*loadCleanDocumentFromBuffer(
                      reinterpret_cast<const unsigned char*>(text.data()), text.size(), *parser)),
                  nodesOf(*expected));
        // The parser is as before.
        EXPECT_THAT(nodesOf(*load("<a> </a>", *parser)), ::testing::HasSubstr("[ ]"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , LoadsClean,
    ::testing::Values(
        Texts{"NoText", ""}, Texts{"NoTextInside", "<b/><b></b>"}, Texts{"WhiteSpaceAlone", " \n"},
        Texts{"Indented", "\n <b>\r\n\t<c/>\r</b>\n <p:b p:c=' '/>\n"},
        Texts{"TextInWhiteSpace", "\n x \n<b> y</b>z <b>  </b> "},
        Texts{"CharacterReferences", "&#32;&#10;<b>&#x20;&#xA0;</b> &#13; <b>&#9;x</b> "},
        Texts{"PredefinedEntities", " &lt; <b> &amp;</b> <b>&gt; </b>\n&quot;<b/>&apos;\n"},
        Texts{"Comments", " <!-- --> x <!----> <!-- a -->y<b> <!----></b>"},
        Texts{"ProcessingInstructions", " <?p?> x <?p ?> <?p a?>y<b> <?p?></b>"},
        Texts{"CdataSections", " <![CDATA[]]> <![CDATA[ ]]>x <![CDATA[y]]> <b> <![CDATA[z]]> </b>"
                               "<b><![CDATA[ ]]>x</b><b>x<![CDATA[ ]]></b>"},
        Texts{"ManyCdataSections", "<![CDATA[x]]> <![CDATA[ ]]><![CDATA[ ]]> <b/> "},
        Texts{"OtherBlanks", "&#x85;<b>&#x2028;</b><b>\xC2\xA0</b><b>\xE3\x80\x80 </b>"},
        Texts{"TextBehindManyBuffersOfWhiteSpace", std::string(300000, '\n') + "x<b/>"},
        Texts{"ManyBuffersOfWhiteSpace", std::string(300000, ' ') + "<b/>"},
        Texts{"WhiteSpaceBehindManyBuffersOfText",
              std::string(300000, 'x') + std::string(300000, ' ') + "<b/>" +
                  std::string(99999, ' ') + '&' + "lt;" + std::string(99999, ' ')}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(LoadDocument, takesAnyNumberOfCharacterReferences) {
    std::string text = "<a>";
    for (int i = 0; i != 100000; ++i) {
        text += "&amp;&#x41;";
    }
    const Parser parser = makeParser();
    EXPECT_EQ(load(text + "</a>", *parser)->getDocumentElement()->getTextContent()[199999], u'A');
}

struct Wrong {
    const char* name;
    std::string bytes;
    const char* message;
};

const Wrong wrongs[] = {
    {"Empty", "", "line 1, column 1: empty document, expected a root element"},
    {"BlankOnly", " \n", "line 2, column 1: "},
    {"MarkOnly", low, "line 1, column 1: "},
    {"NotXml", "hello", "line 1, column 1: "},
    {"Unclosed", "<a>\n<b>\n</a>", "line 3, column 3: "},
    {"CutOff", "<a>\n<b", "line 2, column "},
    {"UndeclaredPrefix", "<a>\n <p:b/></a>", "line 2, column "},
    {"UnknownEntity", "<a>&e;</a>", "line 1, column "},
    {"ControlCharacter", "<a>\x01</a>", "line 1, column "},
    {"ControlReference", "<a>&#1;</a>", "line 1, column "},
    {"BrokenUtf8", "<a>\xC3(</a>", "line 1, column "},
    {"LoneSurrogate", utf16("<a>", false) + std::string("\x00\xD8", 2) + utf16("</a>", false),
     "line 1, column "},
    {"SecondRoot", "<a/><b/>", "line 1, column "},
    {"DocumentType", "<!DOCTYPE a>\n<a/>", "line 1, column 13: document type found, expected none"},
    {"DocumentTypeUtf16", utf16("<!DOCTYPE a []><a/>", true),
     "line 1, column 13: document type found, expected none"},
    {"ExternalDocumentType", "<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>",
     "line 1, column 40: document type found, expected none"},
    {"ExternalEntity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><a>&e;</a>",
     "line 1, column 13: document type found, expected none"},
    {"ParameterEntity", "<!DOCTYPE a [<!ENTITY % e SYSTEM 'file:///etc/passwd'> %e;]><a/>",
     "line 1, column 13: document type found, expected none"},
    {"BillionLaughs",
     "<!DOCTYPE a [<!ENTITY b 'ha'><!ENTITY c '&b;&b;'><!ENTITY d '&c;&c;'>]><a x='&d;'>&d;</a>",
     "line 1, column 13: document type found, expected none"},
};

void PrintTo(const Wrong& value, std::ostream* to) { *to << value.name; }

class Refuses : public ::testing::TestWithParam<Wrong> {};

TEST_P(Refuses, tellingLineAndColumn) {
    const std::string message = loadingError(GetParam().bytes);
    EXPECT_EQ(message.substr(0, std::string(GetParam().message).size()), GetParam().message)
        << message;
    EXPECT_GT(message.size(), 20u);
}

TEST_P(Refuses, andTheParserCanBeUsedAgain) {
    const Parser parser = makeParser();
    EXPECT_THROW(load(GetParam().bytes, *parser), xercesc::SAXParseException);
    EXPECT_EQ(meaningOf(*load("<a/>", *parser)), "\nstart {}a\nend");
}

INSTANTIATE_TEST_SUITE_P(, Refuses, ::testing::ValuesIn(wrongs),
                         [](const auto& test) { return test.param.name; });

std::string nested(std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i != depth; ++i) {
        text += "<a>";
    }
    for (std::size_t i = 0; i != depth; ++i) {
        text += "</a>";
    }
    return text;
}

TEST(LoadDocument, takesElementsUpToTheDepthLimit) {
    EXPECT_EQ(loadingError(nested(maximumElementDepth)), "");
}

TEST(LoadDocument, refusesElementsThatStandTooDeep) {
    const std::string message = "line 1, column 12292: element a is 4097 deep, expected at "
                                "most 4096";
    EXPECT_EQ(loadingError(nested(maximumElementDepth + 1)), message);
    EXPECT_EQ(loadingError(nested(1000000)), message);
}

TEST(LoadDocument, countsDepthNotElements) {
    std::string text = "<r>";
    for (int i = 0; i != 10000; ++i) {
        text += "<a><b/></a>";
    }
    EXPECT_EQ(loadingError(text + "</r>"), "");
}

/// An element with that many attributes, around some content.
std::string withAttributes(std::size_t count, const std::string& content = "") {
    std::string text = "<p:a xmlns:p='urn:p'";
    for (std::size_t i = 1; i < count; ++i) {
        text += " x" + std::to_string(i) + "=''";
    }
    return text + ">" + content + "</p:a>";
}

TEST(LoadDocument, takesAttributesUpToTheLimit) {
    EXPECT_EQ(loadingError(withAttributes(maximumOpenAttributes)), "");
}

TEST(LoadDocument, refusesMoreAttributesThanTheLimit) {
    const std::string text = withAttributes(maximumOpenAttributes + 1);
    const auto behindName = std::to_string(text.rfind('=') + 1);
    EXPECT_EQ(loadingError(text), "line 1, column " + behindName +
                                      ": element p:a and those around it have 1025 attributes, "
                                      "expected at most 1024");
    EXPECT_NE(loadingError(withAttributes(1000000)), "");
}

TEST(LoadDocument, countsTheAttributesOfTheElementsAroundOnly) {
    const std::string half = withAttributes(maximumOpenAttributes / 2);
    EXPECT_EQ(loadingError(withAttributes(maximumOpenAttributes / 2, half + half + "<b/>")), "");
    EXPECT_NE(loadingError(withAttributes(maximumOpenAttributes / 2 + 1, half)), "");
}

/// A root with that many different names in it, its own included.
std::string withNames(std::size_t count, const char* before, const char* behind) {
    std::string text = "<r>";
    for (std::size_t i = 1; i < count; ++i) {
        text += before + std::to_string(i) + behind;
    }
    return text + "</r>";
}

TEST(LoadDocument, takesDifferentNamesUpToTheLimit) {
    EXPECT_EQ(loadingError(withNames(maximumNames, "<a", "/>")), "");
}

TEST(LoadDocument, refusesMoreDifferentNamesThanTheLimit) {
    EXPECT_THAT(loadingError(withNames(maximumNames + 1, "<a", "/>")),
                ::testing::HasSubstr(": element a16384: 16385 different names of elements and "
                                     "attributes so far, expected at most 16384"));
    const std::pair<const char*, const char*> otherNames[] = {
        {"<r a", "='u'/>"},
        {"<r xmlns:a", "='u'/>"},
        {"<r xmlns:p='a", "' p:b=''/>"},
        {"<p:r xmlns:p='a", "'/>"},
    };
    for (const auto& [before, behind] : otherNames) {
        EXPECT_THAT(loadingError(withNames(maximumNames + 1, before, behind)),
                    ::testing::HasSubstr(" different names "))
            << before;
    }
}

TEST(LoadDocument, countsEachNameOnce) {
    std::string text = "<r xmlns:p='urn:p'>";
    for (unsigned int i = 0; i != maximumNames; ++i) {
        text += "<a b='c'/><p:a p:b=''/>";
    }
    EXPECT_EQ(loadingError(text + "</r>"), "");
}

TEST(LoadDocument, refusesEveryPrefixOfADocument) {
    const std::string text = "<?xml version=\"1.0\"?><p:a xmlns:p=\"urn:p\"><!-- c --><b x=\"1\">"
                             "&lt;&#65;<![CDATA[x]]></b></p:a>";
    ASSERT_EQ(loadingError(text), "");
    const Parser parser = makeParser();
    for (std::size_t size = 0; size != text.size(); ++size) {
        EXPECT_THROW(load(text.substr(0, size), *parser), xercesc::SAXParseException) << size;
    }
}

TEST(LoadDocument, refusesNullWithALength) {
    const Parser parser = makeParser();
    EXPECT_THROW(loadDocumentFromBuffer(nullptr, 1, *parser), Exceptions::InvalidArgument);
    EXPECT_THROW(loadDocumentFromBuffer(nullptr, 0, *parser), xercesc::SAXParseException);
}

class OwnErrorHandler : public xercesc::DOMErrorHandler {
public:
    bool handleError(const xercesc::DOMError&) override { return false; }
};

TEST(LoadDocument, putsTheParsersErrorHandlerAndFilterBack) {
    const Parser parser = makeParser();
    OwnErrorHandler own;
    parser->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMErrorHandler, &own);
    load("<a/>", *parser);
    EXPECT_THROW(load("<a", *parser), xercesc::SAXParseException);
    EXPECT_EQ(parser->getDomConfig()->getParameter(xercesc::XMLUni::fgDOMErrorHandler), &own);
    EXPECT_EQ(parser->getFilter(), nullptr);
}

std::string fileError(const Utf16Unit* path) {
    const Parser parser = makeParser();
    try {
        loadDocumentFromFile(path, *parser);
    } catch (const Exceptions::IOError& error) {
        return Platform::toUtf8(error.message());
    } catch (const xercesc::SAXParseException& error) {
        return utf8(error.getMessage());
    }
    return {};
}

TEST(LoadDocument, tellsWhyAFileCannotBeRead) {
    const auto path = temporaryFile("none.xml");
    const Utf16Unit empty = 0;
    EXPECT_EQ(fileError(nullptr), "XML document: no path, expected the path of a file");
    EXPECT_EQ(fileError(&empty), "XML document: no path, expected the path of a file");
    EXPECT_EQ(fileError(pathText(path).c_str()), path.u8string() + ": no such file");
    const auto folder = std::filesystem::temp_directory_path();
    EXPECT_EQ(fileError(pathText(folder).c_str()),
              folder.u8string() + ": is a directory, expected a file");
}

TEST(LoadDocument, tellsThatReadingFails) {
    const std::filesystem::path path("/proc/self/mem");
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "no file at hand that can be opened and not be read";
    }
    EXPECT_EQ(fileError(pathText(path).c_str()), path.u8string() + ": can't be read");
}

TEST(LoadDocument, refusesAnEmptyFile) {
    const auto path = temporaryFile("empty.xml");
    std::ofstream(path, std::ios::binary).flush();
    EXPECT_EQ(fileError(pathText(path).c_str()).substr(0, 18), "line 1, column 1: ");
    std::filesystem::remove(path);
}

TEST(LoadDocument, neverTakesAPathForAUri) {
    EXPECT_EQ(fileError(Platform::widen("file:///etc/hostname").c_str()),
              "file:///etc/hostname: no such file");
}

TEST(LoadDocument, readsAFileOfManyPieces) {
    const auto path = temporaryFile("large.xml");
    std::string text = "<a>";
    for (int i = 0; i != 100000; ++i) {
        text += "<b>" + std::to_string(i) + "</b>\n";
    }
    text += "</a>";
    std::ofstream(path, std::ios::binary) << text;
    const Parser parser = makeParser();
    const Parser other = makeParser();
    EXPECT_EQ(meaningOf(*loadDocumentFromFile(pathText(path).c_str(), *parser)),
              meaningOf(*load(text, *other)));
    std::filesystem::remove(path);
}

} // namespace
} // namespace Corvid::XMLUtils
