#include "host/xmlutils/InvalidCharacters.h"

#include "host/base/Exceptions.h"
#include "tests/xmlutils/Documents.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;

struct Case {
    const char* name;
    std::u16string text;
    std::vector<std::size_t> positions;
    const char* replaced;
};

const std::string mark = "\xEF\xBF\xBD";

const Case cases[] = {
    {"Control", u"ab\u0001c", {2}, "abXc"},
    {"LastControl", u"\u001F", {0}, "X"},
    {"Several", u"\u0008<\u000B", {0, 2}, "X&lt;X"},
    {"LoneHighSurrogate", {u'a', 0xD800, u'b'}, {1}, "aXb"},
    {"LoneHighSurrogateAtEnd", {u'a', 0xDBFF}, {1}, "aX"},
    {"LoneLowSurrogate", {0xDC00, u'a'}, {0}, "Xa"},
    {"SurrogatesSwapped", {0xDC00, 0xD800}, {0, 1}, "XX"},
    {"HighBeforePair", {0xD800, 0xD800, 0xDC00}, {0}, "X\xF0\x90\x80\x80"},
    {"NotACharacter", {0xFFFE, 0xFFFF, 0xFFFD}, {0, 1}, "XX\xEF\xBF\xBD"},
};

void PrintTo(const Case& value, std::ostream* to) { *to << value.name; }

class HandlesInvalidCharacter : public ::testing::TestWithParam<Case> {};

std::string withMarks(std::string text) {
    for (auto at = text.find('X'); at != std::string::npos; at = text.find('X')) {
        text.replace(at, 1, mark);
    }
    return text;
}

TEST_P(HandlesInvalidCharacter, byReplacingAndReporting) {
    const Document document = makeRootedDocument();
    addElement(*document->getDocumentElement(), u"p:v", GetParam().text.c_str());
    ReplaceInvalidCharacters invalid;
    DataIO::Memory::MemoryDataSink sink;
    serialise(document.get(), EncodingType::utf8, Layout::compact, invalid, sink);
    const std::string all(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize());
    EXPECT_NE(all.find("<p:v>" + withMarks(GetParam().replaced) + "</p:v>"), std::string::npos)
        << all;
    EXPECT_EQ(loadingError(all), "");
    ASSERT_EQ(invalid.count(), GetParam().positions.size());
    for (std::size_t i = 0; i != invalid.count(); ++i) {
        const InvalidCharacter& character = invalid.replaced()[i];
        EXPECT_EQ(character.position, GetParam().positions[i]);
        EXPECT_EQ(character.unit, GetParam().text[character.position]);
        EXPECT_EQ(Platform::toUtf8(character.path), "p:v");
    }
}

TEST_P(HandlesInvalidCharacter, byRefusing) {
    const Document document = makeRootedDocument();
    addElement(*document->getDocumentElement(), u"p:v", GetParam().text.c_str());
    EXPECT_THROW(written(*document), Exceptions::InvalidFormat);
    Utf16Text text = Platform::widen("as it was");
    EXPECT_THROW(domToBuffer(document.get(), text, EncodingType::utf8), Exceptions::InvalidFormat);
    EXPECT_EQ(text, Platform::widen("as it was"));
}

INSTANTIATE_TEST_SUITE_P(, HandlesInvalidCharacter, ::testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

std::string refusal(const xercesc::DOMNode& node) {
    try {
        written(node);
    } catch (const Exceptions::InvalidFormat& error) {
        return Platform::toUtf8(error.message());
    }
    return {};
}

TEST(RefuseInvalidCharacters, namesTheSetThePropertyAndTheCodeUnit) {
    const Document document = makeRootedDocument();
    xercesc::DOMElement* const set = addElement(*document->getDocumentElement(), u"p:Track");
    set->setAttributeNS(u"urn:r", u"r:GenerationUID", u"99");
    set->setAttributeNS(u"urn:r", u"r:InstanceUID", u"01.02");
    addElement(*set, u"p:TrackName", u"ab\u0001");
    EXPECT_EQ(
        refusal(*document),
        "p:Track[@r:InstanceUID=\"01.02\"]/p:TrackName: code unit U+0001 at position 2 of its "
        "text found, expected characters that XML 1.0 can hold");
}

TEST(RefuseInvalidCharacters, namesTheAttribute) {
    const Document document = makeRootedDocument();
    addElement(*document->getDocumentElement(), u"p:Link")->setAttribute(u"to", u"\uFFFF");
    EXPECT_EQ(refusal(*document).substr(0, 31), "p:Link/@to: code unit U+FFFF at");
}

TEST(RefuseInvalidCharacters, shortensALongPath) {
    const Document document = makeRootedDocument();
    xercesc::DOMElement* element = document->getDocumentElement();
    for (const XMLCh* name : {u"p:a", u"p:b", u"p:c", u"p:d", u"p:e", u"p:f"}) {
        element = addElement(*element, name);
    }
    element->appendChild(document->createTextNode(u"\u0002"));
    EXPECT_EQ(refusal(*document).substr(0, 24), "p:a/.../p:d/p:e/p:f: cod");
}

TEST(RefuseInvalidCharacters, namesEveryStepOfAPathThatJustFits) {
    const Document document = makeRootedDocument();
    xercesc::DOMElement* element = document->getDocumentElement();
    for (const XMLCh* name : {u"p:a", u"p:b", u"p:c", u"p:d"}) {
        element = addElement(*element, name);
    }
    element->appendChild(document->createTextNode(u"\u0002"));
    EXPECT_EQ(refusal(*document).substr(0, 20), "p:a/p:b/p:c/p:d: cod");
}

TEST(ReplaceInvalidCharacters, remembersOnlyTheFirstOnes) {
    const Document document = makeRootedDocument();
    addElement(*document->getDocumentElement(), u"p:v", std::u16string(5000, u'\u0001').c_str());
    ReplaceInvalidCharacters invalid(10);
    DataIO::Memory::MemoryDataSink sink;
    serialise(document.get(), EncodingType::utf16LE, Layout::compact, invalid, sink);
    EXPECT_EQ(invalid.count(), 5000u);
    EXPECT_EQ(invalid.replaced().size(), 10u);
}

} // namespace
} // namespace Corvid::XMLUtils
