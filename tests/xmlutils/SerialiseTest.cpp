#include "host/xmlutils/Serialise.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/CleanDocument.h"
#include "tests/xmlutils/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <xercesc/framework/MemBufFormatTarget.hpp>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;
using namespace xercesc;

const std::u16string everyCharacterClass =
    u" \t\n\r\r\n<&>\"' ]]> \u007F\u0085\u00E9\u07FF\u0800\u2028\uD7FF\uE000\uFFFD\U00010000"
    u"\U0010FFFF \n";

/// A tree with values that a careless writer changes.
Document sample() {
    Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    DOMElement* const set = addElement(*root, u"p:Set");
    set->setAttributeNS(u"urn:r", u"r:InstanceUID", everyCharacterClass.c_str());
    addElement(*set, u"p:Value", everyCharacterClass.c_str());
    addElement(*set, u"p:Blank", u"  ");
    addElement(*set, u"p:Empty");
    DOMElement* const mixed = addElement(*set, u"p:Mixed", u"a ");
    addElement(*addElement(*mixed, u"p:In"), u"p:Inner");
    mixed->appendChild(document->createTextNode(u" b"));
    set->appendChild(document->createComment(u" a < b & c "));
    set->appendChild(document->createProcessingInstruction(u"do", u"a <&> b"));
    set->appendChild(document->createCDATASection(u"x ]]> y \r <"));
    return document;
}

using Form = std::tuple<EncodingType, Layout>;

class RoundTrip : public ::testing::TestWithParam<Form> {};

TEST_P(RoundTrip, ofBytesKeepsEverything) {
    const auto [encoding, layout] = GetParam();
    const Document document = sample();
    const Parser parser = makeParser();
    EXPECT_EQ(meaningOf(*load(written(*document, encoding, Layout::compact), *parser)),
              meaningOf(*document));
    const Document flat = makeRootedDocument();
    addElement(*addElement(*flat->getDocumentElement(), u"p:a"), u"p:b",
               everyCharacterClass.c_str());
    DOMDocument* const read = load(written(*flat, encoding, layout), *parser);
    cleanEmptyTextNodes(*read);
    EXPECT_EQ(meaningOf(*read), meaningOf(*flat));
}

TEST_P(RoundTrip, ofTextKeepsEverythingWhateverTheDeclarationSays) {
    const auto [encoding, layout] = GetParam();
    const Document document = makeRootedDocument();
    addElement(*document->getDocumentElement(), u"p:a", everyCharacterClass.c_str());
    Utf16Text text;
    domToBuffer(document.get(), text, encoding, layout);
    EXPECT_EQ(text[0], '<');
    const Parser parser = makeParser();
    DOMDocument* const read = loadDocumentFromBuffer(
        reinterpret_cast<const unsigned char*>(text.data()), text.size() * 2, *parser);
    cleanEmptyTextNodes(*read);
    EXPECT_EQ(meaningOf(*read), meaningOf(*document));
}

INSTANTIATE_TEST_SUITE_P(
    , RoundTrip,
    ::testing::Combine(::testing::Values(EncodingType::utf8, EncodingType::utf16,
                                         EncodingType::utf16LE, EncodingType::utf16BE),
                       ::testing::Values(Layout::indented, Layout::compact)));

TEST(Serialise, putsOneElementOnALineAndNothingIntoText) {
    const Document document = makeRootedDocument();
    DOMElement* const set = addElement(*document->getDocumentElement(), u"p:Set");
    addElement(*set, u"p:Value", u" 1\n");
    addElement(*addElement(*set, u"p:Empty"), u"p:Leaf");
    DOMElement* const mixed = addElement(*set, u"p:Mixed", u"a");
    addElement(*addElement(*mixed, u"p:In"), u"p:Inner");
    addElement(*set, u"p:NoText")->appendChild(document->createTextNode(u""));
    set->appendChild(document->createComment(u"c"));
    EXPECT_EQ(written(*document, EncodingType::utf8, Layout::indented),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<p:Root xmlns:p=\"urn:p\">\n"
              "  <p:Set>\n"
              "    <p:Value> 1\n</p:Value>\n"
              "    <p:Empty>\n"
              "      <p:Leaf/>\n"
              "    </p:Empty>\n"
              "    <p:Mixed>a<p:In><p:Inner/></p:In></p:Mixed>\n"
              "    <p:NoText></p:NoText>\n"
              "    <!--c-->\n"
              "  </p:Set>\n"
              "</p:Root>\n");
}

TEST(Serialise, addsNoCharacterInCompactLayout) {
    const Document document = makeRootedDocument();
    addElement(*addElement(*document->getDocumentElement(), u"p:a"), u"p:b");
    EXPECT_EQ(written(*document), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                                  "<p:Root xmlns:p=\"urn:p\"><p:a><p:b/></p:a></p:Root>");
}

TEST(Serialise, marksAndNamesTheEncoding) {
    const Document document = makeRootedDocument();
    EXPECT_EQ(written(*document, EncodingType::utf8).substr(0, 38),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    const std::string low = written(*document, EncodingType::utf16LE);
    const std::string high = written(*document, EncodingType::utf16BE);
    EXPECT_EQ(low.substr(0, 4), std::string("<\0?\0", 4));
    EXPECT_EQ(high.substr(0, 4), std::string("\0<\0?", 4));
    const std::string marked = written(*document, EncodingType::utf16).substr(0, 2);
    EXPECT_TRUE(marked == "\xFF\xFE" || marked == "\xFE\xFF");
    Utf16Text text;
    domToBuffer(document.get(), text, EncodingType::utf16BE);
    EXPECT_EQ(Platform::toUtf8(text).substr(0, 41),
              "<?xml version=\"1.0\" encoding=\"UTF-16BE\"?>");
}

TEST(Serialise, crossesThePiecesOfItsBufferAtEveryPlace) {
    for (std::size_t shift = 0; shift != 12; ++shift) {
        std::u16string value(65536 / 4 - 60 + shift, u'a');
        for (int i = 0; i != 40000; ++i) {
            value += u"\U00010437\u20AC\u00E9x";
        }
        const Document document = makeRootedDocument();
        addElement(*document->getDocumentElement(), u"p:v", value.c_str());
        const Parser parser = makeParser();
        for (const EncodingType encoding : {EncodingType::utf8, EncodingType::utf16BE}) {
            EXPECT_EQ(meaningOf(*load(written(*document, encoding), *parser)),
                      meaningOf(*document));
        }
    }
}

TEST(Serialise, keepsACharacterAtAnyPlaceAmongLetters) {
    const Parser parser = makeParser();
    for (const std::u16string odd : {u"\u0080", u"\u07FF", u"\u0800", u"\uFFFD", u"\U00010437"}) {
        for (std::size_t letters = 0; letters != 20; ++letters) {
            for (std::size_t place = 0; place <= letters; ++place) {
                std::u16string value(letters, u'~');
                value.insert(place, odd);
                const Document document = makeRootedDocument();
                addElement(*document->getDocumentElement(), u"p:v", value.c_str());
                ASSERT_EQ(meaningOf(*load(written(*document, EncodingType::utf8), *parser)),
                          meaningOf(*document))
                    << letters << " letters, at " << place;
            }
        }
    }
}

class FailingSink : public DataIO::DataSink {
public:
    void write(const unsigned char*, std::size_t) override {
        throw Exceptions::IOError("full", CORVID_HERE);
    }
};

TEST(Serialise, passesOnTheFailureOfTheSink) {
    const Document document = makeRootedDocument();
    RefuseInvalidCharacters invalid;
    FailingSink sink;
    EXPECT_THROW(serialise(document.get(), EncodingType::utf8, Layout::compact, invalid, sink),
                 Exceptions::IOError);
}

TEST(Serialise, refusesWhatIsNoDocument) {
    const Document document = makeRootedDocument();
    Utf16Text text = Platform::widen("kept");
    EXPECT_THROW(domToBuffer(nullptr, text, EncodingType::utf8), Exceptions::InvalidArgument);
    EXPECT_THROW(domToBuffer(document.get(), text, static_cast<EncodingType>(99)),
                 Exceptions::InvalidArgument);
    EXPECT_THROW(domToBuffer(document->createTextNode(u"x"), text, EncodingType::utf8),
                 Exceptions::InvalidArgument);
    EXPECT_THROW(domToBuffer(makeDocument().get(), text, EncodingType::utf8),
                 Exceptions::InvalidFormat);
    EXPECT_EQ(text, Platform::widen("kept"));
}

TEST(Serialise, refusesMarkupThatCannotBeWritten) {
    const Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    DOMNode* const nodes[] = {document->createComment(u"a--b"), document->createComment(u"a-"),
                              document->createProcessingInstruction(u"x", u"a?>b"),
                              document->createEntityReference(u"e")};
    for (DOMNode* const node : nodes) {
        root->appendChild(node);
        EXPECT_THROW(written(*document), Exceptions::InvalidFormat) << utf8(node->getNodeName());
        root->removeChild(node);
    }
    DOMImplementation* const core = DOMImplementationRegistry::getDOMImplementation(u"Core");
    document->insertBefore(core->createDocumentType(u"p:Root", nullptr, nullptr), root);
    EXPECT_THROW(written(*document), Exceptions::InvalidFormat);
}

TEST(Serialise, refusesTargetsOfInstructionsThatCannotBeReadBack) {
    const Document document = makeRootedDocument();
    for (const char16_t* target : {u"xml", u"XML", u"Xml", u"xmL", u"a:b", u":"}) {
        DOMNode* const node = document->createProcessingInstruction(target, u"version='1.0'");
        for (DOMNode* const parent : {static_cast<DOMNode*>(document.get()),
                                      static_cast<DOMNode*>(document->getDocumentElement())}) {
            parent->appendChild(node);
            try {
                written(*document);
                ADD_FAILURE() << utf8(target);
            } catch (const Exceptions::InvalidFormat& refused) {
                EXPECT_THAT(Platform::toUtf8(refused.message()),
                            ::testing::EndsWith("processing instruction with the target \"" +
                                                utf8(target) +
                                                "\" found, expected a name without colon other "
                                                "than xml"));
            }
            parent->removeChild(node);
        }
    }
}

TEST(Serialise, writesTargetsOfInstructionsThatOnlyResembleXml) {
    const Document document = makeRootedDocument();
    for (const char16_t* target : {u"xml-stylesheet", u"xm", u"xmlx", u"_xml"}) {
        document->getDocumentElement()->appendChild(
            document->createProcessingInstruction(target, u""));
    }
    EXPECT_THAT(written(*document),
                ::testing::HasSubstr("<?xml-stylesheet?><?xm?><?xmlx?><?_xml?>"));
}

TEST(Serialise, writesNodesWithoutText) {
    const Document document = makeRootedDocument();
    DOMElement* const root = document->getDocumentElement();
    root->appendChild(document->createComment(nullptr));
    root->appendChild(document->createTextNode(nullptr));
    root->appendChild(document->createProcessingInstruction(u"a", nullptr));
    EXPECT_THAT(written(*document), ::testing::HasSubstr("<!----><?a?>"));
}

TEST(Serialise, writesADocumentOfAnyDepth) {
    const Document document = makeRootedDocument();
    DOMElement* element = document->getDocumentElement();
    for (int i = 0; i != 100000; ++i) {
        element = addElement(*element, u"p:e");
    }
    element->appendChild(document->createTextNode(u"x"));
    const std::string text = written(*document, EncodingType::utf8, Layout::indented);
    // Indentation ends at 40 levels, so the text stays in proportion to the document.
    EXPECT_LT(text.size(), 100000u * 2 * (80 + 8));
    EXPECT_NE(text.find(">x</p:e>"), std::string::npos);
}

/// A tree that its number alone decides; its characters are all allowed in XML.
/// @param prefixesAgree  whether each prefix stands for the same namespace everywhere.
Document randomDocument(unsigned seed, bool prefixesAgree) {
    std::mt19937 random(seed);
    const auto upTo = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    const auto text = [&](unsigned longest) {
        const std::u16string alphabet = u"ab \t\n\r<>&\"'-\u00E9\u20AC]";
        std::u16string value;
        for (unsigned i = upTo(longest); i != 0; --i) {
            value += alphabet[upTo(static_cast<unsigned>(alphabet.size()))];
        }
        return value;
    };
    const XMLCh* const uris[] = {nullptr, u"urn:a", u"urn:b", u"urn:c"};
    const XMLCh* const names[] = {u"e", u"a:e", u"b:e", u"c:e"};
    const XMLCh* const attributeNames[] = {u"x", u"a:x", u"b:y", u"c:z"};
    Document document = makeDocument();
    DOMNode* parent = document->appendChild(document->createElementNS(u"urn:root", u"r:root"));
    for (unsigned i = 0; i != 60; ++i) {
        const unsigned kind = upTo(10);
        if (kind < 5) {
            const unsigned name = upTo(4);
            DOMElement* const element = document->createElementNS(prefixesAgree ? uris[name]
                                                                  : name == 0   ? uris[upTo(4)]
                                                                                : uris[1 + upTo(3)],
                                                                  names[name]);
            for (unsigned k = upTo(3); k != 0; --k) {
                const unsigned which = upTo(4);
                element->setAttributeNS(which == 0 ? nullptr : uris[which], attributeNames[which],
                                        text(8).c_str());
            }
            parent->appendChild(element);
            parent = upTo(2) == 0 ? element : parent;
        } else if (kind < 8) {
            parent->appendChild(document->createTextNode(text(12).c_str()));
        } else if (kind == 8) {
            parent->appendChild(document->createComment(u"c"));
        } else if (parent->getParentNode()->getNodeType() == DOMNode::ELEMENT_NODE) {
            parent = parent->getParentNode();
        }
    }
    return document;
}

std::string writtenByXerces(const DOMDocument& document) {
    auto* const implementation =
        dynamic_cast<DOMImplementationLS*>(DOMImplementationRegistry::getDOMImplementation(u"LS"));
    const std::unique_ptr<DOMLSSerializer, Releaser> serialiser(
        implementation->createLSSerializer());
    const std::unique_ptr<DOMLSOutput, Releaser> output(implementation->createLSOutput());
    MemBufFormatTarget target;
    output->setByteStream(&target);
    output->setEncoding(u"UTF-8");
    serialiser->write(&document, output.get());
    return std::string(reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen());
}

TEST(Serialise, saysWhatTheDocumentSays) {
    for (unsigned seed = 0; seed != 300; ++seed) {
        const Document document = randomDocument(seed, false);
        const Parser parser = makeParser();
        for (const EncodingType encoding : {EncodingType::utf8, EncodingType::utf16}) {
            ASSERT_EQ(meaningOf(*load(written(*document, encoding), *parser)), meaningOf(*document))
                << "seed " << seed << ": " << written(*document);
        }
    }
}

TEST(Serialise, saysWhatTheSerialiserOfXercesSays) {
    // With prefixes that disagree, what Xerces-C writes is not always well-formed.
    for (unsigned seed = 0; seed != 300; ++seed) {
        const Document document = randomDocument(seed, true);
        const Parser ours = makeParser();
        const Parser theirs = makeParser();
        ASSERT_EQ(meaningOf(*load(written(*document), *ours)),
                  meaningOf(*load(writtenByXerces(*document), *theirs)))
            << "ours and that of Xerces-C differ for seed " << seed << ": " << written(*document)
            << "\n"
            << writtenByXerces(*document);
    }
}

} // namespace
} // namespace Corvid::XMLUtils
