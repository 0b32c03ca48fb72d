#include "tools/corvid/terminal/Lines.h"

#include <gtest/gtest.h>

using Corvid::Tool::wrapped;

namespace {

TEST(Wrapped, breaksBetweenItemsOnly) {
    EXPECT_EQ(wrapped({}, ", ", 2), "");
    EXPECT_EQ(wrapped({"one"}, ", ", 2), "  one\n");
    const std::string half(38, 'x');
    EXPECT_EQ(wrapped({half, half}, ", ", 2), "  " + half + ", " + half + "\n") << "80 characters";
    EXPECT_EQ(wrapped({half, half + "y"}, ", ", 2), "  " + half + ",\n  " + half + "y\n");
    EXPECT_EQ(wrapped({half, half, "z"}, ", ", 2), "  " + half + ",\n  " + half + ", z\n")
        << "the comma has no place";
    EXPECT_EQ(wrapped({"a", std::string(99, 'b'), "c"}, " ", 0),
              "a\n" + std::string(99, 'b') + "\nc\n");
}

} // namespace
