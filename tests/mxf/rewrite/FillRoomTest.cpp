#include "host/mxf/rewrite/FillRoom.h"

#include "host/klv/BerOutput.h"
#include "tests/mxf/ReadBack.h"

#include <numeric>
#include <random>

namespace Corvid::mxf {
namespace {

using Sizes = std::vector<std::uint64_t>;

struct Case {
    const char* name;
    std::vector<FillSlot> slots; ///< content before, and where it ends if nothing moves
    Sizes sizes;
    std::uint64_t missing = 0;
    std::uint64_t gap = 0;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

FillRoom roomOf(const std::vector<FillSlot>& slots) {
    return giveRoom(Templates::vector<FillSlot>(slots.begin(), slots.end()));
}

class GivesRoom : public ::testing::TestWithParam<Case> {};

TEST_P(GivesRoom, asExpected) {
    const FillRoom room = roomOf(GetParam().slots);
    EXPECT_EQ(room.missing, GetParam().missing);
    EXPECT_EQ(room.gap, GetParam().gap);
    if (room.missing == 0 && room.gap == 0) {
        EXPECT_EQ(Sizes(room.sizes.begin(), room.sizes.end()), GetParam().sizes);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , GivesRoom,
    ::testing::Values(
        Case{"NothingMoves", {{100, 130}, {50, 200}}, {30, 20}},
        Case{"TheNextFillTakesTheChange", {{105, 130}, {50, 200}}, {25, 20}},
        Case{"TheFillAfterItWhereThatIsTooSmall", {{114, 130}, {50, 200}}, {0, 36}},
        Case{"AllContentMovesWhereThereIsOneFill", {{120, 130}, {50, 200}}, {0, 30}},
        Case{"AFillBeforeShrinksWhereThoseAfterAreTooSmall",
             {{100, 150}, {60, 210}, {10, 215}},
             {45, 0, 0}},
        Case{"AFillBeforeTakesAGapAtTheEnd", {{100, 130}, {60, 200}}, {40, 0}},
        Case{"ANewFillEndsWhatHadNone", {{100, 130}, {50, 200}}, {30, 20}},
        Case{"ExactlyFull", {{100, 130}, {70, 170}}, {0, 0}},
        Case{"OneFillOfSeveralThatAreTooSmall", {{100, 120}, {100, 240}, {20, 250}}, {0, 0, 30}},
        Case{"Missing", {{100, 130}, {101, 200}}, {}, 1, 0},
        Case{"GapOfOne", {{100, 130}, {99, 200}}, {}, 0, 1},
        Case{"GapOfSixteen", {{184, 200}}, {}, 0, 16}, Case{"Seventeen", {{183, 200}}, {17}}),
    Testing::nameOfCase<Case>);

TEST(FillRoom, isAlwaysFullAndHasNoFillThatIsTooSmall) {
    std::mt19937 random(4711);
    const auto upTo = [&random](std::uint64_t most) { return random() % (most + 1); };
    for (int round = 0; round != 20000; ++round) {
        std::vector<FillSlot> slots(1 + upTo(4));
        std::uint64_t position = 0;
        std::uint64_t content = 0;
        for (FillSlot& slot : slots) {
            const std::uint64_t was = upTo(40);
            position += was + (upTo(1) == 0 ? 0 : leastFill + upTo(20));
            slot.end = position;
            slot.content = upTo(2) == 0 ? upTo(60) : was;
            content += slot.content;
        }
        const FillRoom room = roomOf(slots);
        if (content > position) {
            EXPECT_EQ(room.missing, content - position);
            continue;
        }
        EXPECT_EQ(room.missing, 0U);
        const std::uint64_t fill = position - content;
        EXPECT_EQ(room.gap, fill < leastFill ? fill : 0);
        if (room.gap == 0) {
            EXPECT_EQ(std::accumulate(room.sizes.begin(), room.sizes.end(), std::uint64_t{0}),
                      fill);
            for (const std::uint64_t size : room.sizes) {
                EXPECT_TRUE(size == 0 || size >= leastFill) << size;
            }
        }
    }
}

TEST(FillRoom, findsALengthForEveryFill) {
    for (unsigned char wanted = 1; wanted <= 9; ++wanted) {
        for (const std::uint64_t base : {std::uint64_t{17}, std::uint64_t{100}, std::uint64_t{250},
                                         std::uint64_t{65530}, std::uint64_t{1} << 32}) {
            for (std::uint64_t size = base; size != base + 60; ++size) {
                const unsigned char octets = fillOctets(size, wanted);
                const std::uint64_t value = size - 16 - octets;
                ASSERT_LE(value, size);
                EXPECT_EQ(KLV::berOctets(value, octets), octets) << size;
                if (size >= 16U + wanted && KLV::berOctets(size - 16 - wanted, wanted) == wanted) {
                    EXPECT_EQ(octets, wanted);
                }
            }
        }
    }
}

} // namespace
} // namespace Corvid::mxf
