#include "host/xmlutils/CleanDocument.h"

#include "tests/xmlutils/Documents.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;

std::string cleaned(std::string_view text) {
    const Parser parser = makeParser();
    xercesc::DOMDocument* const document = load(text, *parser);
    cleanEmptyTextNodes(*document);
    const std::string all = written(*document);
    return all.substr(all.find("?>") + 2);
}

TEST(CleanEmptyTextNodes, removesWhiteSpaceBetweenElements) {
    EXPECT_EQ(cleaned("<a> \t\r\n<b>\n</b> <c/>\n</a>"), "<a><b/><c/></a>");
}

TEST(CleanEmptyTextNodes, keepsTextWithItsWhiteSpace) {
    EXPECT_EQ(cleaned("<a>\n <b> x </b> tail\n</a>"), "<a><b> x </b> tail\n</a>");
}

TEST(CleanEmptyTextNodes, takesOtherBlanksForText) {
    EXPECT_EQ(cleaned("<a>&#xA0;</a>"), "<a>\xC2\xA0</a>");
}

TEST(CleanEmptyTextNodes, keepsCdataSectionsAndComments) {
    EXPECT_EQ(cleaned("<a> <!-- --> <![CDATA[ ]]></a>"), "<a><!-- --> </a>");
}

TEST(CleanEmptyTextNodes, leavesWhatIsOutsideOfTheNode) {
    const Parser parser = makeParser();
    xercesc::DOMDocument* const document = load("<a> <b> </b> </a>", *parser);
    cleanEmptyTextNodes(*document->getDocumentElement()->getFirstElementChild());
    EXPECT_NE(written(*document).find("<a> <b/> </a>"), std::string::npos);
}

TEST(CleanEmptyTextNodes, goesAsDeepAsTheDocument) {
    const Document document = makeRootedDocument();
    xercesc::DOMElement* element = document->getDocumentElement();
    for (int i = 0; i != 100000; ++i) {
        element = addElement(*element, u"p:e", u" ");
    }
    cleanEmptyTextNodes(*document);
    EXPECT_EQ(element->getFirstChild(), nullptr);
    EXPECT_EQ(element->getParentNode()->getFirstChild(), element);
}

} // namespace
} // namespace Corvid::XMLUtils
