#include "host/xmlutils/scan/TextPlace.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

struct Case {
    const char* name;
    std::u16string_view text;
    unsigned long long line;
    unsigned long long column;
};
void PrintTo(const Case& value, std::ostream* to) { *to << value.name; }

class CountsPlaces : public ::testing::TestWithParam<Case> {};

TEST_P(CountsPlaces, behindATextInTwoPieces) {
    for (std::size_t first = 0; first <= GetParam().text.size(); ++first) {
        TextPlace place;
        place.pass(GetParam().text.substr(0, first));
        place.pass({});
        place.pass(GetParam().text.substr(first));
        EXPECT_EQ(place.line(), GetParam().line) << first;
        EXPECT_EQ(place.column(), GetParam().column) << first;
    }
}

INSTANTIATE_TEST_SUITE_P(, CountsPlaces,
                         ::testing::Values(Case{"Nothing", u"", 1, 1},
                                           Case{"OneLine", u"abc", 1, 4},
                                           Case{"LineFeeds", u"a\n\nbc", 3, 3},
                                           Case{"Returns", u"a\r\rb", 3, 2},
                                           Case{"Pairs", u"a\r\nb\r\n", 3, 1},
                                           Case{"PairsAndMore", u"\n\r\r\n\na", 5, 2},
                                           Case{"Surrogates", u"\n\U00010000x", 2, 4}),
                         [](const auto& test) { return test.param.name; });

} // namespace
} // namespace Corvid::XMLUtils
