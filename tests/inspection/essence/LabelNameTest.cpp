#include "inspection/essence/LabelName.h"

#include "tests/support/MxfBuilder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace Corvid::Testing {
namespace {

using Inspection::labelName;
using Inspection::shortName;

Types::UniversalLabel label(std::uint64_t back) {
    std::array<Types::u8, 16> bytes{};
    const Bytes whole = join({hex("060e2b34 0401010d"), number(back, 8)});
    std::copy(whole.begin(), whole.end(), bytes.begin());
    return Types::UniversalLabel(bytes);
}

TEST(LabelName, isTheShortOneWithTheMostBytes) {
    EXPECT_EQ(shortName(label(0x0401020201323102)), "AVC-Intra 100");
    EXPECT_EQ(shortName(label(0x0401020203010117)), "JPEG 2000, broadcast level 7 reversible");
    EXPECT_EQ(shortName(label(0x0401020203017f7f)), "JPEG 2000");
    EXPECT_EQ(shortName(label(0x0d01030102060200)), "PCM");
}

TEST(LabelName, isElseThatOfTheRegisters) {
    EXPECT_EQ(labelName(label(0x0401020203080200)), "JPEG XS Main 422 10 Profile");
}

TEST(LabelName, isElseThatOfTheRegisterNode) {
    EXPECT_EQ(labelName(label(0x0402020277000000)), "Compressed sound codings");
}

TEST(LabelName, isElseTheLabelItself) {
    EXPECT_EQ(labelName(label(0x7f00000000000001)),
              "06.0e.2b.34.04.01.01.0d.7f.00.00.00.00.00.00.01");
}

TEST(LabelName, isNotThatOfALabelOfAnotherRegistry) {
    std::array<Types::u8, 16> bytes = label(0x0401020201323102).bytes();
    bytes[4] = 1;
    EXPECT_EQ(shortName(Types::UniversalLabel(bytes)), "");
}

struct Row {
    std::uint64_t item;
    unsigned length;
    const char* name;
};

TEST(ShortNames, areSortedAndHaveNoBytesThatDoNotCount) {
    constexpr Row rows[] = {
#define CORVID_SHORT_NAME(item, length, name) {item, length, name},
#include "inspection/essence/ShortNames.def"
    };
    std::set<std::pair<std::uint64_t, unsigned>> seen;
    std::uint64_t before = 0;
    std::string section;
    for (const Row& row : rows) {
        ASSERT_LE(row.length, 8U);
        const std::uint64_t unused = row.length == 8 ? 0 : ~std::uint64_t{0} >> (8 * row.length);
        EXPECT_EQ(row.item & unused, 0U) << row.name;
        EXPECT_TRUE(seen.emplace(row.item, row.length).second) << row.name;
        EXPECT_LE(before, row.item) << row.name;
        before = row.item;
    }
}

} // namespace
} // namespace Corvid::Testing
