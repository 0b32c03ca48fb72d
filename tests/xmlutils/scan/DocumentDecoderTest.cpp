#include "host/xmlutils/scan/DocumentDecoder.h"

#include "host/xmlutils/Initializer.h"
#include "tests/xmlutils/Documents.h"
#include "tests/xmlutils/scan/Tags.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;

std::string declaring(const std::string& encoding) {
    return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i != count; ++i) {
        result += text;
    }
    return result;
}

struct Case {
    const char* name;
    std::string document;
    const XMLCh* encoding;
    Tags tags;
};
void PrintTo(const Case& value, std::ostream* to) { *to << value.name; }

const std::string plain = "<a><b xmlns='urn:x'>y</b></a>";
const Tags tagsOfPlain = {"a", "b xmlns=[urn:x]"};

const Case cases[] = {
    {"Utf8", plain, nullptr, tagsOfPlain},
    {"LowFirst", inUnits(plain, 2, false), u"UTF-16LE", tagsOfPlain},
    {"HighFirst", inUnits(declaring("UTF-8") + plain, 2, true), u"UTF-16BE", tagsOfPlain},
    {"Utf16ThatSaysUtf16", inUnits(declaring("UTF-16") + plain, 2, true), u"UTF-16BE", tagsOfPlain},
    {"BytesThatSayUtf16", declaring("UTF-16") + plain, nullptr, tagsOfPlain},
    {"BytesThatSayUtf32", declaring("UTF-32") + plain, nullptr, tagsOfPlain},
    {"FourBytesHighFirst", inUnits(declaring("UCS-4") + plain, 4, true), nullptr, tagsOfPlain},
    {"FourBytesLowFirst", inUnits(declaring("ISO-10646-UCS-4") + plain, 4, false), nullptr,
     tagsOfPlain},
    {"FourBytesUtf32", inUnits(declaring("UTF-32") + plain, 4, false), nullptr, tagsOfPlain},
    {"FourBytesThenOne", inUnits(declaring("windows-1252"), 4, true) + plain, nullptr, tagsOfPlain},
    {"OneByteThenTwo", declaring("UTF-16LE") + inUnits(plain, 2, false), nullptr, tagsOfPlain},
    {"Ascii", declaring("us-ascii") + plain, nullptr, tagsOfPlain},
    {"LowerCase", declaring("iso-8859-1") + "<\xE9/>", nullptr, {"\xC3\xA9"}},
    {"DeclarationOfManyBlanks",
     "<?xml version = '1.0'" + std::string(10000, ' ') + "encoding\n=\n\"ISO-8859-1\" ?><\xE9/>",
     nullptr,
     {"\xC3\xA9"}},
    {"TagsAsBase64", declaring("UTF-7") + "+ADw-a/+AD4-", nullptr, {"a"}},
    {"MarkupInWideCharacters",
     declaring("ISO-2022-JP") + "<a>\x1b$B<a<b\x1b(B<c/></a>",
     nullptr,
     {"a", "c"}},
    {"ByteOrderMark", "\xEF\xBB\xBF" + declaring("ISO-8859-1") + "<\xE9/>", nullptr, {"\xC3\xA9"}},
    // In EBCDIC.
    {"OtherLetters",
     "\x4C\x6F\xA7\x94\x93\x40\xA5\x85\x99\xA2\x89\x96\x95\x7E\x7D\xF1\x4B\xF0\x7D\x40\x85\x95\x83"
     "\x96\x84\x89\x95\x87\x7E\x7D\xC9\xC2\xD4\xF0\xF3\xF7\x7D\x6F\x6E\x4C\x81\x61\x6E",
     nullptr,
     {"a"}},
    {"InstructionThatIsNoDeclaration", "<?xml-stylesheet encoding='UTF-16LE'?>" + plain, nullptr,
     tagsOfPlain},
    // Xerces-C decodes more than the declaration then before it uses the encoding.
    {"DeclarationOfOtherBlanks",
     "<?xml\tversion='1.0'\r\nencoding='UTF-16LE'?><a>" + std::string(3, 'x') + "<b/></a>",
     nullptr,
     {"a", "b"}},
    {"DeclarationOfOtherBlanksThenMore",
     "<?xml\tversion='1.0' encoding='ISO-8859-1'?><a>" + std::string(20000, 'x') + "<\xE9/></a>",
     nullptr,
     {"a", "\xC3\xA9"}},
    {"UnknownEncoding", declaring("none") + plain, nullptr, {}},
    {"EncodingOfOtherLetters", declaring(repeated("\xE6\xB5\xB8", 1000)) + plain, nullptr, {}},
    {"EncodingOfOtherLettersInUtf16",
     inUnits("<?xml version='1.0' encoding='", 2, true) + repeated("\x6D\x78", 1000) +
         inUnits("'?><a/>", 2, true),
     u"UTF-16BE",
     {}},
    {"LongEncoding", declaring(std::string(10000, 'A')) + plain, nullptr, {}},
    {"DeclarationTooLong", "<?xml version='1.0'" + std::string(20000, ' ') + "?><a/>", nullptr, {}},
};

class Decodes : public ::testing::TestWithParam<Case> {};

TEST_P(Decodes, asTheParserDoes) {
    const auto& [name, document, encoding, tags] = GetParam();
    const Tags parsed = parsedTags(document, encoding);
    if (parsed.empty() && !tags.empty() && std::string_view(name) == "TagsAsBase64") {
        GTEST_SKIP() << "Xerces-C does not know UTF-7 here";
    }
    EXPECT_EQ(parsed, tags);
    EXPECT_EQ(scannedTags(document, document.size(), encoding), tags);
}

INSTANTIATE_TEST_SUITE_P(, Decodes, ::testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

/// All text of a document in blocks of so many bytes.
std::u16string decoded(std::string_view document, std::size_t blockSize) {
    Initializer::instance();
    DocumentDecoder decoder(nullptr);
    std::u16string text;
    for (std::size_t at = 0; at < document.size(); at += blockSize) {
        const std::string block(document.substr(at, blockSize));
        decoder.take(reinterpret_cast<const XMLByte*>(block.data()), block.size());
        for (auto piece = decoder.next(); !piece.empty(); piece = decoder.next()) {
            text += piece;
        }
    }
    return text;
}

TEST(DocumentDecoder, leavesOutTheByteOrderMark) {
    EXPECT_EQ(decoded("\xEF\xBB\xBF<a/>", 100), u"<a/>");
    EXPECT_EQ(decoded("\xEF\xBB\xBF<?xml version='1.0'?><a/>", 100), u"<?xml version='1.0'?><a/>");
}

TEST(DocumentDecoder, splitsNoCharacter) {
    std::string document = "<a>";
    std::u16string text = u"<a>";
    for (int i = 0; i != 999; ++i) {
        document += "x\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
        text += u"x\u00E9\u20AC\U0001F600";
    }
    for (const std::size_t size : {4u, 5u, 7u, 1023u, 1024u, 1025u, 100000u}) {
        EXPECT_EQ(decoded(document, size), text) << size;
    }
}

/// Characters of several bytes, at any place in what is decoded together.
TEST(DocumentDecoder, splitsNoCharacterOfOtherEncodings) {
    const std::pair<const char*, std::string> characters[] = {
        {"Shift_JIS", "\x82\xA0"},
        {"EUC-JP", "\x8F\xB0\xA1"},
        {"GB18030", "\x81\x30\x81\x30"},
        {"Big5", "\xA4\x40"},
        {"ISO-2022-JP", "\x1B$B$\"\x1B(B"},
        {"UTF-7", "+AOk-"},
        {"UTF-16BE", std::string("\0\xE9", 2)},
    };
    for (const auto& [encoding, character] : characters) {
        const bool isWide = character[0] == '\0';
        const auto inIt = [&](const std::string& text) {
            return isWide ? inUnits(text, 2, true) : text;
        };
        for (std::size_t blanks = 0; blanks != character.size(); ++blanks) {
            std::string document = declaring(encoding) + inIt("<a>" + std::string(blanks, ' '));
            for (int i = 0; i != 2000; ++i) {
                document += character;
            }
            document += inIt("<b/></a>");
            const Tags parsed = parsedTags(document);
            if (parsed.empty()) {
                continue; // Xerces-C does not know every encoding everywhere.
            }
            EXPECT_EQ(parsed, (Tags{"a", "b"})) << encoding;
            EXPECT_EQ(scannedTags(document, document.size()), parsed) << encoding;
            EXPECT_EQ(scannedTags(document, 1001), parsed) << encoding;
        }
    }
}

TEST(DocumentDecoder, findsTheBytesOfAUnit) {
    Initializer::instance();
    const std::string first = "<a>\xE2", second = "\x82\xACx\xC3\xA9y";
    DocumentDecoder decoder(nullptr);
    decoder.take(reinterpret_cast<const XMLByte*>(first.data()), first.size());
    ASSERT_EQ(decoder.next(), u"<a>");
    EXPECT_EQ(decoder.bytesBefore(0), 0u);
    EXPECT_EQ(decoder.bytesBefore(2), 2u);
    ASSERT_EQ(decoder.next(), u"");
    decoder.take(reinterpret_cast<const XMLByte*>(second.data()), second.size());
    ASSERT_EQ(decoder.next(), u"\u20ACx\u00E9y");
    EXPECT_EQ(decoder.bytesBefore(0), 0u);
    EXPECT_EQ(decoder.bytesBefore(1), 2u);
    EXPECT_EQ(decoder.bytesBefore(2), 3u);
    EXPECT_EQ(decoder.bytesBefore(3), 5u);
}

TEST(DocumentDecoder, givesNothingMoreBehindWhatIsNoText) {
    EXPECT_EQ(decoded("<a>\xC3(" + std::string(5000, 'x'), 100000).find(u'x'),
              std::u16string::npos);
}

} // namespace
} // namespace Corvid::XMLUtils
