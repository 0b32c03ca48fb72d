#include "host/base/Shortened.h"

#include <gtest/gtest.h>

namespace Corvid {
namespace {

TEST(Shortened, keepsTextThatFits) {
    EXPECT_EQ(shortened("", 0), "");
    EXPECT_EQ(shortened("abc", 3), "abc");
}

TEST(Shortened, marksWhatItCuts) { EXPECT_EQ(shortened("abcd", 3), "abc..."); }

TEST(Shortened, cutsBetweenCharacters) {
    const std::string text = u8"a\u00e4\u20ac\U0001F600";
    const std::size_t ends[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6};
    for (std::size_t most = 0; most != text.size(); ++most) {
        EXPECT_EQ(shortened(text, most), text.substr(0, ends[most]) + "...") << most;
    }
}

} // namespace
} // namespace Corvid
