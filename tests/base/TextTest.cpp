#include "host/base/Text.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

namespace Corvid::Platform {
namespace {

struct Case {
    const char* name;
    std::string utf8;
    Utf16Text utf16;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }
std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

class SameTextBothWays : public ::testing::TestWithParam<Case> {};

TEST_P(SameTextBothWays, converts) {
    EXPECT_EQ(fromUtf8(GetParam().utf8), GetParam().utf16);
    EXPECT_EQ(toUtf8(GetParam().utf16), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(
    , SameTextBothWays,
    ::testing::Values(Case{"Empty", "", {}}, Case{"Ascii", "MXF", {'M', 'X', 'F'}},
                      Case{"LastOfOneByte", "\x7F", {0x7F}},
                      Case{"FirstOfTwoBytes", "\xC2\x80", {0x80}},
                      Case{"LastOfTwoBytes", "\xDF\xBF", {0x7FF}},
                      Case{"FirstOfThreeBytes", "\xE0\xA0\x80", {0x800}},
                      Case{"BeforeSurrogates", "\xED\x9F\xBF", {0xD7FF}},
                      Case{"BehindSurrogates", "\xEE\x80\x80", {0xE000}},
                      Case{"NonCharacter", "\xEF\xBF\xBF", {0xFFFF}},
                      Case{"FirstPair", "\xF0\x90\x80\x80", {0xD800, 0xDC00}},
                      Case{"Clef", "\xF0\x9D\x84\x9E", {0xD834, 0xDD1E}},
                      Case{"LastPair", "\xF4\x8F\xBF\xBF", {0xDBFF, 0xDFFF}},
                      Case{"ZeroInside", std::string("a\0b", 3), {'a', 0, 'b'}}),
    nameOfCase);

class MalformedUtf8 : public ::testing::TestWithParam<Case> {};

TEST_P(MalformedUtf8, becomesOneReplacementForEachByte) {
    EXPECT_EQ(fromUtf8(GetParam().utf8), GetParam().utf16);
}

constexpr Utf16Unit bad = 0xFFFD;

INSTANTIATE_TEST_SUITE_P(
    , MalformedUtf8,
    ::testing::Values(Case{"LoneTail", "a\x80z", {'a', bad, 'z'}}, Case{"CutInTwo", "\xC3", {bad}},
                      Case{"CutInThree", "\xE2\x82", {bad, bad}},
                      Case{"CutInFour", "\xF0\x9D\x84", {bad, bad, bad}},
                      Case{"LeadThenLetter", "\xC3x", {bad, 'x'}},
                      Case{"LongFormOfSlash", "\xC0\xAF", {bad, bad}},
                      Case{"LongFormOfThree", "\xE0\x80\xAF", {bad, bad, bad}},
                      Case{"LongFormOfFour", "\xF0\x80\x80\xAF", {bad, bad, bad, bad}},
                      Case{"Surrogate", "\xED\xA0\x80", {bad, bad, bad}},
                      Case{"BeyondUnicode", "\xF4\x90\x80\x80", {bad, bad, bad, bad}},
                      Case{"NeverAByte", "\xFE\xFF", {bad, bad}},
                      Case{"FiveBytes", "\xF8\x88\x80\x80\x80", {bad, bad, bad, bad, bad}}),
    nameOfCase);

TEST(ToUtf8, replacesLoneSurrogates) {
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(toUtf8(Utf16Text{'a', 0xD800, 'b'}), "a" + replacement + "b");
    EXPECT_EQ(toUtf8(Utf16Text{'a', 0xDC00, 'b'}), "a" + replacement + "b");
    EXPECT_EQ(toUtf8(Utf16Text{0xD800}), replacement);
    EXPECT_EQ(toUtf8(Utf16Text{0xDC00, 0xD800}), replacement + replacement);
    EXPECT_EQ(toUtf8(Utf16Text{0xD800, 0xD800, 0xDC00}), replacement + "\xF0\x90\x80\x80");
}

TEST(ToUtf8, looksNoFurtherThanItsLength) {
    const Utf16Unit text[] = {'a', 0xD834, 0xDD1E};
    EXPECT_EQ(toUtf8(text, 2), "a\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(text, 0), "");
}

TEST(ToUtf8, takesZeroTerminatedText) {
    const Utf16Unit text[] = {'a', 'b', 0, 'c'};
    EXPECT_EQ(toUtf8(text), "ab");
}

TEST(Text, everyCodePointSurvives) {
    for (char32_t point = 0; point <= 0x10FFFF; ++point) {
        if (point >= 0xD800 && point < 0xE000) {
            continue;
        }
        Utf16Text text;
        if (point >= 0x10000) {
            text.push_back(static_cast<Utf16Unit>(0xD7C0 + (point >> 10)));
            text.push_back(static_cast<Utf16Unit>(0xDC00 | (point & 0x3FF)));
        } else {
            text.push_back(static_cast<Utf16Unit>(point));
        }
        ASSERT_EQ(fromUtf8(toUtf8(text)), text) << "U+" << std::hex << unsigned{point};
    }
}

TEST(Text, anyBytesGiveWellFormedText) {
    std::mt19937 random(20240501);
    for (int round = 0; round != 2000; ++round) {
        std::string bytes(random() % 24, '\0');
        for (char& c : bytes) {
            c = static_cast<char>(random() | (random() % 4 != 0 ? 0x80 : 0));
        }
        const Utf16Text once = fromUtf8(bytes);
        ASSERT_EQ(fromUtf8(toUtf8(once)), once) << "in round " << round;
    }
}

TEST(Widen, takesBytesForCodeUnits) {
    EXPECT_EQ(widen(std::string_view("a\0\x80\xFF", 4)), (Utf16Text{'a', 0, 0x80, 0xFF}));
    EXPECT_EQ(widen(""), Utf16Text());
}

TEST(WstringToString, undoesWidenAndMarksWhatDoesNotFit) {
    std::string bytes;
    for (int i = 0; i != 256; ++i) {
        bytes.push_back(static_cast<char>(i));
    }
    EXPECT_EQ(wstringToString(widen(bytes)), bytes);
    EXPECT_EQ(wstringToString(Utf16Text{'a', 0x100, 0xD834, 0xDD1E}), "a???");
}

} // namespace
} // namespace Corvid::Platform
