#include "fuzz/Readable.h"

#include <gtest/gtest.h>

namespace Corvid::Fuzzing {
namespace {

struct Case {
    const char* name;
    std::string text;
    const char* complaint; ///< null where there is none
};

std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

class ExpectReadable : public ::testing::TestWithParam<Case> {};

TEST_P(ExpectReadable, endsTheSearchWhereTextIsNot) {
    const Case& param = GetParam();
    if (param.complaint == nullptr) {
        expectReadable(param.text, "it");
    } else {
        EXPECT_DEATH(expectReadable(param.text, "it"), param.complaint);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , ExpectReadable,
    ::testing::Values(Case{"Lines", "a\nb \xC3\xA9 \xF0\x9F\x8E\xAC\n", nullptr},
                      Case{"NoUtf8", "a\xFF", "it is not UTF-8"},
                      Case{"Surrogate", "\xED\xA0\x80", "it is not UTF-8"},
                      Case{"Escape", "a\033[31m", "it has a control character"},
                      Case{"Tab", "a\tb", "it has a control character"},
                      Case{"Zero", std::string("a\0", 2), "it has a control character"},
                      Case{"LongControl", "a\xC2\x9B", "it has a control character"},
                      Case{"NoBreakSpace", "a\xC2\xA0", nullptr},
                      Case{"Override", "a\u202E", "it has a character that changes"},
                      Case{"Isolate", "a\u2066", "it has a character that changes"}),
    nameOfCase);

TEST(ExpectJson, endsTheSearchWhereTextIsNot) {
    expectJson("{\"a\": [1, null]}\n", "it");
    EXPECT_DEATH(expectJson("{\"a\": }", "it"), "it is not JSON");
    EXPECT_DEATH(expectJson("\"\xFF\"", "it"), "it is not JSON");
}

TEST(ExpectBounded, endsTheSearchWhereTextIsTooLong) {
    expectBounded("123456", 2, 2, 2, "it");
    EXPECT_DEATH(expectBounded("1234567", 2, 2, 2, "it"), "it has 7 bytes, for an input of 2");
}

TEST(WithoutColours, takesNothingButColours) {
    EXPECT_EQ(withoutColours("\033[1ma\033[0m m\nb\033[31"), "a m\nb");
    EXPECT_EQ(withoutColours("amam"), "amam");
    EXPECT_EQ(withoutColours(""), "");
}

} // namespace
} // namespace Corvid::Fuzzing
