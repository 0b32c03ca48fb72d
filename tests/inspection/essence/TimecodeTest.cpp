#include "inspection/essence/Timecode.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Corvid;
using namespace Corvid::Inspection;

namespace {

using Types::Rational;

TEST(Timecode, convertsEditUnitsBetweenRates) {
    EXPECT_EQ(converted(1760280960, Rational(48000, 1), Rational(25, 1)), 916813);
    EXPECT_EQ(converted(1001, Rational(30000, 1001), Rational(30000, 1001)), 1001);
    EXPECT_EQ(converted(30000, Rational(30000, 1001), Rational(1, 1)), 1001);
    EXPECT_EQ(converted(1, Rational(48000, 1), Rational(25, 1)), 0);
    EXPECT_EQ(converted(-1, Rational(48000, 1), Rational(25, 1)), -1);
}

TEST(Timecode, convertsNothingThatCannotBeCounted) {
    constexpr Types::int64 greatest = std::numeric_limits<Types::int64>::max();
    EXPECT_FALSE(converted(1, Rational(0, 1), Rational(25, 1)));
    EXPECT_FALSE(converted(1, Rational(25, 1), Rational(25, 0)));
    EXPECT_FALSE(converted(1, Rational(-25, 1), Rational(25, 1)));
    EXPECT_FALSE(converted(greatest, Rational(1, 1), Rational(2, 1)));
    EXPECT_FALSE(
        converted(std::numeric_limits<Types::int64>::min(), Rational(1, 1), Rational(2, 1)));
    EXPECT_EQ(converted(std::numeric_limits<Types::int64>::min(), Rational(3, 1), Rational(1, 1)),
              -greatest / 3 - 1);
    EXPECT_EQ(converted(greatest, Rational(2, 1), Rational(1, 1)), greatest / 2);
    EXPECT_EQ(converted(greatest, Rational(25, 1), Rational(25, 1)), greatest);
}

TEST(Timecode, knowsTheRateOfItsFramesWhereThatIsCertain) {
    EXPECT_EQ(frameRate({0, 25, false}, Rational(48000, 1))->numerator(), 25);
    EXPECT_EQ(frameRate({0, 30, false}, Rational(30000, 1001))->denominator(), 1001);
    EXPECT_EQ(frameRate({0, 30, true}, std::nullopt)->denominator(), 1001);
    EXPECT_FALSE(frameRate({0, 24, false}, Rational(48000, 1)));
    EXPECT_FALSE(frameRate({0, 0, false}, std::nullopt));
    EXPECT_FALSE(frameRate({0, -25, false}, std::nullopt));
}

} // namespace
