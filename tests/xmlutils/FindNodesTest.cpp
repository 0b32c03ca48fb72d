#include "host/xmlutils/FindNodes.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/ExceptionText.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/LoadDocument.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

using namespace Corvid;

namespace {

struct Release {
    template <class T> void operator()(T* object) const { object->release(); }
};

/// A document that the reader's implementation has made.
class Loaded {
public:
    explicit Loaded(const std::string& text)
        : parser_(XMLUtils::Initializer::instance().domImplementation()->createLSParser(
              xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr)),
          document(*XMLUtils::loadDocumentFromBuffer(
              reinterpret_cast<const unsigned char*>(text.data()), text.size(), *parser_)) {}

private:
    std::unique_ptr<xercesc::DOMLSParser, Release> parser_;

public:
    xercesc::DOMDocument& document;
};

std::string messageNow() { return XMLUtils::currentMessage(); }

#ifdef CORVID_WITH_XQILLA

const char* const text = "<a:r xmlns:a='urn:a' xmlns:b='urn:b'><a:x n='1'>one</a:x>"
                         "<a:x n='2'>zwölf</a:x><b:x>three</b:x></a:r>";

struct Case {
    const char* name;
    const char* xpath;
    std::u16string texts;
};

class FindNodes : public testing::TestWithParam<Case> {};

TEST_P(FindNodes, givesThemInTheOrderOfTheDocument) {
    const Loaded loaded(text);
    std::u16string texts;
    for (const xercesc::DOMNode* node : XMLUtils::findNodes(loaded.document, GetParam().xpath)) {
        texts += std::u16string(node->getTextContent()) + u",";
    }
    EXPECT_EQ(texts, GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(, FindNodes,
                         testing::Values(Case{"ByName", "//a:x", u"one,zwölf,"},
                                         Case{"ByText", "//*[. = 'zwölf']", u"zwölf,"},
                                         Case{"ByPredicate", "/a:r/a:x[@n > 1]", u"zwölf,"},
                                         Case{"Attributes", "//@n", u"1,2,"},
                                         Case{"OfAnotherNamespace", "/a:r/b:x", u"three,"},
                                         Case{"Backwards", "//b:x/preceding-sibling::*",
                                              u"one,zwölf,"},
                                         Case{"None", "//a:y", u""}),
                         [](const auto& each) { return each.param.name; });

TEST(FindNodesFrom, anElementBeginsThere) {
    const Loaded loaded(text);
    auto& root = *loaded.document.getDocumentElement();
    EXPECT_EQ(XMLUtils::findNodes(root, "a:x").size(), 2U);
    EXPECT_EQ(XMLUtils::findNodes(loaded.document, "a:x").size(), 0U);
}

TEST(FindNodesRefuses, whatIsNoExpressionOrGivesNoNodes) {
    const Loaded loaded(text);
    for (const char* xpath : {"//[", "//c:x", "1 + 1", "'text'", ""}) {
        try {
            XMLUtils::findNodes(loaded.document, xpath);
            ADD_FAILURE() << xpath;
        } catch (const Exceptions::InvalidFormat&) {
            EXPECT_EQ(messageNow().rfind("XPath " + std::string(xpath) + ": ", 0), 0U)
                << messageNow();
            EXPECT_GT(messageNow().size(), std::string(xpath).size() + 10) << messageNow();
        }
    }
}

#else

TEST(FindNodesRefuses, aDocumentWithoutXPath) {
    const Loaded loaded("<a/>");
    EXPECT_THROW(XMLUtils::findNodes(loaded.document, "a"), Exceptions::InvalidArgument);
}

#endif

TEST(XmlCurrentMessage, isWhatTheExceptionSays) {
    XMLUtils::Initializer::instance();
    try {
        throw xercesc::SAXException(u"zwölf");
    } catch (...) {
        EXPECT_EQ(messageNow(), "zwölf");
    }
    try {
        Loaded("<a><b></a>");
    } catch (...) {
        EXPECT_EQ(messageNow().rfind("line 1, column ", 0), 0U) << messageNow();
    }
    try {
        const Loaded loaded("<a/>");
        loaded.document.createElement(u"1");
    } catch (...) {
        EXPECT_NE(messageNow().find("XML character"), std::string::npos) << messageNow();
    }
    try {
        throw Exceptions::IOError("no file", CORVID_HERE);
    } catch (...) {
        EXPECT_EQ(messageNow(), "no file");
    }
    try {
        throw std::runtime_error("no");
    } catch (...) {
        EXPECT_EQ(messageNow(), "no");
    }
}

} // namespace
