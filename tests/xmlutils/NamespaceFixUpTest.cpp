#include "host/base/Exceptions.h"
#include "tests/xmlutils/Documents.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;
using xercesc::DOMElement;

std::string body(const xercesc::DOMNode& node) {
    const std::string all = written(node);
    return all.substr(all.find("?>") + 2);
}

/// Written, read back and compared: what the names mean must be the same.
void expectSameMeaning(const xercesc::DOMDocument& document) {
    const Parser parser = makeParser();
    EXPECT_EQ(meaningOf(*load(written(document), *parser)), meaningOf(document))
        << written(document);
}

TEST(NamespaceFixUp, declaresWhatNothingDeclares) {
    const Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    DOMElement* const child = document->createElementNS(u"urn:g", u"g:Dark");
    child->setAttributeNS(u"urn:t", u"t:Key", u"1");
    root->appendChild(child);
    root->appendChild(document->createElementNS(u"urn:g", u"g:Dark"));
    EXPECT_EQ(body(*document), "<p:Root xmlns:p=\"urn:p\"><g:Dark xmlns:g=\"urn:g\""
                               " xmlns:t=\"urn:t\" t:Key=\"1\"/><g:Dark xmlns:g=\"urn:g\"/>"
                               "</p:Root>");
    expectSameMeaning(*document);
}

TEST(NamespaceFixUp, declaresNothingTwice) {
    const Document document = makeRootedDocument();
    addElement(*addElement(*document->getDocumentElement(), u"p:a"), u"p:b");
    EXPECT_EQ(body(*document), "<p:Root xmlns:p=\"urn:p\"><p:a><p:b/></p:a></p:Root>");
}

TEST(NamespaceFixUp, declaresAgainWhereAPrefixMeansSomethingElse) {
    const Document document = makeRootedDocument();
    DOMElement* const other = document->createElementNS(u"urn:other", u"p:a");
    document->getDocumentElement()->appendChild(other);
    addElement(*other, u"p:b");
    addElement(*document->getDocumentElement(), u"p:c");
    EXPECT_EQ(body(*document), "<p:Root xmlns:p=\"urn:p\"><p:a xmlns:p=\"urn:other\">"
                               "<p:b xmlns:p=\"urn:p\"/></p:a><p:c/></p:Root>");
    expectSameMeaning(*document);
}

TEST(NamespaceFixUp, givesAnAttributeAPrefixOfItsOwnWhereItsOwnIsTaken) {
    const Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    root->setAttributeNS(u"urn:other", u"p:x", u"1");
    root->setAttributeNS(u"urn:p", u"p:y", u"2");
    expectSameMeaning(*document);
    EXPECT_NE(body(*document).find("xmlns:ns1=\"urn:other\" ns1:x=\"1\""), std::string::npos);
}

TEST(NamespaceFixUp, givesAnAttributeWithoutPrefixOne) {
    const Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    root->setAttributeNS(xercesc::XMLUni::fgXMLNSURIName, u"xmlns:ns1", u"urn:taken");
    root->setAttributeNS(u"urn:other", u"x", u"1");
    expectSameMeaning(*document);
    EXPECT_NE(body(*document).find("ns2:x=\"1\""), std::string::npos);
}

TEST(NamespaceFixUp, letsAnElementWinOverItsOwnDeclaration) {
    const Document document = makeDocument();
    DOMElement* const root = document->createElementNS(u"urn:a", u"p:Root");
    root->setAttributeNS(xercesc::XMLUni::fgXMLNSURIName, u"xmlns:p", u"urn:b");
    root->setAttributeNS(u"urn:b", u"p:x", u"1");
    document->appendChild(root);
    expectSameMeaning(*document);
}

TEST(NamespaceFixUp, endsADefaultNamespaceForElementsOfNone) {
    const Document document = makeDocument();
    DOMElement* const root = document->createElementNS(u"urn:a", u"Root");
    document->appendChild(root);
    root->appendChild(document->createElementNS(nullptr, u"plain"))
        ->appendChild(document->createElementNS(u"urn:a", u"again"));
    root->appendChild(document->createElement(u"old"));
    EXPECT_EQ(body(*document), "<Root xmlns=\"urn:a\"><plain xmlns=\"\"><again xmlns=\"urn:a\"/>"
                               "</plain><old xmlns=\"\"/></Root>");
}

TEST(NamespaceFixUp, leavesThePrefixXmlAlone) {
    const Document document = makeRootedDocument();
    document->getDocumentElement()->setAttributeNS(u"http://www.w3.org/XML/1998/namespace",
                                                   u"xml:lang", u"en");
    EXPECT_EQ(body(*document), "<p:Root xmlns:p=\"urn:p\" xml:lang=\"en\"/>");
}

TEST(NamespaceFixUp, completesAnElementThatIsWrittenAlone) {
    const Document document = makeRootedDocument();
    DOMElement* const child = addElement(*document->getDocumentElement(), u"p:a", u"x");
    EXPECT_EQ(body(*child), "<p:a xmlns:p=\"urn:p\">x</p:a>");
}

TEST(NamespaceFixUp, escapesTheNamespace) {
    const Document document = makeDocument();
    document->appendChild(document->createElementNS(u"urn:a?b&c\"<", u"p:Root"));
    expectSameMeaning(*document);
}

TEST(NamespaceFixUp, refusesAPrefixWithoutNamespace) {
    const Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    root->appendChild(document->createElement(u"q:a"));
    EXPECT_THROW(written(*document), Exceptions::InvalidFormat);
    root->removeChild(root->getFirstChild());
    root->setAttribute(u"q:x", u"1");
    EXPECT_THROW(written(*document), Exceptions::InvalidFormat);
}

TEST(NamespaceFixUp, takesTimeInProportionToTheDocument) {
    // 10,000 levels that each declare a prefix of their own: a search through all grows with the
    // square.
    const Document document = makeRootedDocument();
    DOMElement* element = document->getDocumentElement();
    for (int i = 0; i != 10000; ++i) {
        const std::string digits = std::to_string(i);
        const std::u16string prefix = u"x" + std::u16string(digits.begin(), digits.end());
        DOMElement* const child =
            document->createElementNS((u"urn:" + prefix).c_str(), (prefix + u":e").c_str());
        element->appendChild(child);
        element = child;
    }
    EXPECT_GT(written(*document).size(), 10000u * 20);
}

} // namespace
} // namespace Corvid::XMLUtils
