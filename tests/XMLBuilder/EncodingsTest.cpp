#include "tests/XMLBuilder/Things.h"
#include "tests/support/CodeUnits.h"

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// A document with a text, after a declaration of its encoding where one is given.
std::string textIn(const std::string& encoding, const std::string& text) {
    return (encoding.empty() ? "" : "<?xml version='1.0' encoding='" + encoding + "'?>") +
           documentOf("<t:Thing><e:UTF16String>" + text + "</e:UTF16String></t:Thing>");
}

struct Encoded {
    const char* name;
    std::string bytes;
    const char* text;    ///< what is read of it, UTF-16 in hexadecimal; null where it is refused
    const char* message; ///< a part of it
};

void PrintTo(const Encoded& c, std::ostream* to) { *to << c.name; }

class Encodings : public Things, public testing::WithParamInterface<Encoded> {};

TEST_P(Encodings, areReadOrRefused) {
    const Encoded& c = GetParam();
    if (c.text != nullptr) {
        const auto& set = *readXml(model_, c.bytes).front();
        EXPECT_EQ(bytesOf(elementOf(set, "UTF16String").value()), c.text);
        return;
    }
    EXPECT_THAT(failureOf<Exceptions::ParseError>([&] { readXml(model_, c.bytes); }).message,
                testing::AllOf(StartsWith("class xercesc_3_0::SAXException: line 1, column "),
                               HasSubstr(c.message)));
    EXPECT_EQ(model_.partition.size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    True, Encodings,
    testing::Values(Encoded{"Ascii", textIn("US-ASCII", "a"), "0061", ""},
                    Encoded{"Latin1", textIn("ISO-8859-1", "\xE9"), "00e9", ""},
                    Encoded{"Utf8", textIn("UTF-8", "\xC3\xA9"), "00e9", ""},
                    Encoded{"Utf8WithMark", "\xEF\xBB\xBF" + textIn("", "\xC3\xA9"), "00e9", ""},
                    Encoded{"Utf32LowFirst",
                            std::string("\xFF\xFE\0\0", 4) + inUnits(textIn("", "a"), 4, false),
                            "0061", ""},
                    Encoded{"Utf32HighFirst",
                            std::string("\0\0\xFE\xFF", 4) + inUnits(textIn("", "a"), 4, true),
                            "0061", ""}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Wrong, Encodings,
    testing::Values(
        Encoded{"Unknown", textIn("x-none", "a"), nullptr, "'X-NONE' encoding"},
        Encoded{"NoName", textIn(" ", "a"), nullptr, "invalid XML encoding declaration"},
        Encoded{"NotAscii", textIn("US-ASCII", "\xE9"), nullptr, "0xE9"},
        Encoded{"Latin1AsUtf8", textIn("UTF-8", "\xE9"), nullptr, "invalid byte"},
        Encoded{"Latin1Undeclared", textIn("", "\xE9"), nullptr, "invalid byte"},
        Encoded{"Utf8TooLong", textIn("", "\xC0\xBC"), nullptr, "invalid byte"},
        Encoded{"Utf8Surrogate", textIn("", "\xED\xA0\x80"), nullptr, "irregular bytes"},
        Encoded{"Utf8BeyondUnicode", textIn("", "\xF4\x90\x80\x80"), nullptr, "invalid bytes"},
        Encoded{"Utf8CutOff", textIn("", "\xE2\x82"), nullptr, "invalid byte"},
        Encoded{"NoCharacter", textIn("", "\xEF\xBF\xBF"), nullptr, "0xFFFF"},
        Encoded{"Utf8AsUtf16", textIn("UTF-16LE", "a"), nullptr, ""},
        Encoded{"Utf8BehindAMarkOfUtf16", "\xFF\xFE" + textIn("", "a"), nullptr, ""},
        Encoded{"Utf16FromItsSecondByte", inUnits(textIn("", "a"), 2, false).substr(1), nullptr,
                ""},
        Encoded{"Utf32AsUtf8", inUnits(textIn("UTF-8", "a"), 4, true), nullptr, ""},
        Encoded{"Utf7", "+ADw-a/+AD4-", nullptr, ""},
        Encoded{"Ebcdic", "\x4C\x6F\xA7\x94\x93\x40", nullptr, ""},
        // The bytes are surer than the declaration.
        Encoded{"Utf8DeclaredUtf16", textIn("UTF-16", "\xC3\xA9"), "00e9", ""},
        Encoded{"Utf16DeclaredUtf8", inUnits(textIn("UTF-8", "a"), 2, false), "0061", ""},
        Encoded{"Utf16DeclaredUnknown", inUnits(textIn("x-none", "a"), 2, true), "0061", ""}),
    [](const auto& test) { return test.param.name; });

} // namespace
} // namespace Corvid::Testing
