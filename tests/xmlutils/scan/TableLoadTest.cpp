#include "host/xmlutils/scan/TableLoad.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

constexpr TableGrowth never{0, 0};

TEST(TableLoad, takes32EntriesInABucket) {
    TableLoad table(1000, never);
    for (int i = 0; i != 32; ++i) {
        EXPECT_EQ(table.add(7), 0u) << i;
    }
    EXPECT_EQ(table.mostInABucket(), 32u);
    EXPECT_EQ(table.add(1007), 33u);
}

TEST(TableLoad, takesFourTimesTheAverageMore) {
    TableLoad table(10, never);
    for (std::uint64_t i = 0; i != 100; ++i) {
        EXPECT_EQ(table.add(i), 0u) << i;
    }
    EXPECT_EQ(table.mostInABucket(), 72u);
    std::size_t more = 0;
    while (table.add(3) == 0) {
        ++more;
    }
    EXPECT_EQ(10 + more, table.mostInABucket());
    EXPECT_GT(more, 62u); // The average has grown, too.
}

TEST(TableLoad, growsAsTheTablesOfXercesDo) {
    // 29 buckets become 59 with the 22nd entry, where hashes apart by 29 no longer share a bucket.
    TableLoad early(29, growsEarly);
    for (std::uint64_t i = 0; i != 22; ++i) {
        EXPECT_EQ(early.add(i), 0u);
    }
    EXPECT_EQ(early.mostInABucket(), 32 + 4 * 22u / 59);
    // 7 buckets become 57 with the 29th entry.
    TableLoad late(7, growsLate);
    for (std::uint64_t i = 0; i != 28; ++i) {
        EXPECT_EQ(late.add(i), 0u);
    }
    EXPECT_EQ(late.mostInABucket(), 32u + 16);
    EXPECT_EQ(late.add(28), 0u);
    EXPECT_EQ(late.mostInABucket(), 32u + 4 * 29 / 57);
}

TEST(TableLoad, findsWhatSharesABucketAtAnyWidth) {
    TableLoad table(29, growsEarly);
    std::size_t entries = 0;
    while (table.add(1000000007) == 0) {
        ++entries;
    }
    EXPECT_LE(entries, 35u);
}

TEST(TableLoad, keepsItsWidthWhenItIsCleared) {
    TableLoad table(7, growsLate);
    for (std::uint64_t i = 0; i != 29; ++i) {
        table.add(i);
    }
    table.clear();
    table.add(1);
    EXPECT_EQ(table.mostInABucket(), 32u);
    EXPECT_EQ(table.add(8), 0u);
    EXPECT_EQ(table.mostInABucket(), 32u) << "57 buckets, not 7";
}

} // namespace
} // namespace Corvid::XMLUtils
