#include "tools/corvid/terminal/Printable.h"

#include "tools/corvid/reports/JsonText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace Corvid::Tool;

namespace {

struct Case {
    const char* name;
    std::string text;
    std::string shown;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Printable : public ::testing::TestWithParam<Case> {};

TEST_P(Printable, escapesWhatATerminalShouldNotShow) {
    EXPECT_EQ(printable(GetParam().text), GetParam().shown);
    EXPECT_EQ(printable("a" + GetParam().text + "z"), "a" + GetParam().shown + "z");
    EXPECT_EQ(printable(GetParam().shown), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    , Printable,
    ::testing::Values(
        Case{"Controls", "\t\n\x1B\x7F", "\\x09\\x0a\\x1b\\x7f"},
        Case{"LongControls", "\xC2\x80\xC2\x85\xC2\x9F", "\\x80\\x85\\x9f"},
        Case{"Letters", "\u00A0\u00FC\u05D0\u0627\u4E2D\U0001F3AC",
             "\u00A0\u00FC\u05D0\u0627\u4E2D\U0001F3AC"},
        Case{"VariationSelectors", "\u2764\uFE0F\U000E0100", "\u2764\uFE0F\U000E0100"},
        Case{"EndsOfLines", "\u2028\u2029", "\\u2028\\u2029"},
        Case{"Directions", "\u061C\u200E\u200F\u202A\u202E\u2066\u2069",
             "\\u061c\\u200e\\u200f\\u202a\\u202e\\u2066\\u2069"},
        Case{"Unseen", "\u00AD\u200B\u200D\u2060\uFEFF\uFFF9", //
             "\\u00ad\\u200b\\u200d\\u2060\\ufeff\\ufff9"},
        Case{"UnseenLetters", "\u115F\u3164\uFFA0", "\\u115f\\u3164\\uffa0"},
        Case{"Tags", "\U000E0041\U000E007F", "\\U000e0041\\U000e007f"},
        Case{"NextToThem", "\u00AC\u00AE\u2010\u2027\u202F\u205F\u2070\uFF9F\uFFFC\uFFFD",
             "\u00AC\u00AE\u2010\u2027\u202F\u205F\u2070\uFF9F\uFFFC\uFFFD"},
        Case{"LoneBytes", "\x80\xBF\xC3\xFF", "\\x80\\xbf\\xc3\\xff"},
        Case{"CutCharacters", "\xE2\x80", "\\xe2\\x80"},
        Case{"OverlongEscape", "\xC0\x9B\xE0\x80\x9B", "\\xc0\\x9b\\xe0\\x80\\x9b"},
        Case{"Surrogate", "\xED\xA0\x80", "\\xed\\xa0\\x80"},
        Case{"BeyondUnicode", "\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(JsonText, readsAsTheSameValueAndShowsNothingThatATerminalShouldNot) {
    const std::string text = "\x1B[2J\t\x7F\u0085\u00AD\u202E\uFEFF\U000E0041\u00FC\\\"";
    const nlohmann::ordered_json json = {{text, {text, 1}}};
    const std::string shown = jsonText(json);
    EXPECT_EQ(nlohmann::ordered_json::parse(shown), json);
    EXPECT_EQ(shown.find("{\n  \"\\u001b[2J\\t\\u007f\\u0085\\u00ad\\u202e\\ufeff\\udb40\\udc41"
                         "\u00FC\\\\\\\"\": [\n"),
              0U)
        << shown;
}

TEST(JsonText, hasAReplacementForEachByteThatIsNotUtf8) {
    EXPECT_EQ(jsonText("a\xFF"), "\"a\uFFFD\"");
    EXPECT_EQ(printableJson("\"a\xFF\""), "\"a\\ufffd\"");
}

} // namespace
