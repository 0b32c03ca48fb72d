#include "host/types/UuidMap.h"

#include "host/types/Integers.h"
#include "host/types/UID.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace Corvid::Testing {
namespace {

using namespace Types;

UUID numbered(u32 number) {
    std::array<u8, 16> bytes{};
    writeBigEndian(bytes.data() + 12, number);
    return UUID(bytes);
}

TEST(UuidNumbers, countFromZeroInTheOrderInWhichIdentifiersComeUp) {
    UuidNumbers numbers;
    EXPECT_EQ(numbers.find(UUID()), UuidNumbers::none);
    EXPECT_EQ(numbers.add(numbered(7)), std::pair(0U, true));
    EXPECT_EQ(numbers.add(UUID()), std::pair(1U, true));
    EXPECT_EQ(numbers.add(numbered(7)), std::pair(0U, false));
    EXPECT_EQ(numbers.find(UUID()), 1U);
    EXPECT_EQ(numbers.find(numbered(8)), UuidNumbers::none);
    EXPECT_EQ(numbers[0], numbered(7));
    EXPECT_EQ(numbers.size(), 2U);
}

TEST(UuidNumbers, findTheSameWithRoomMadeBeforeAndAfter) {
    for (const std::size_t room : {0U, 1U, 8U, 9U, 5000U}) {
        UuidNumbers numbers;
        numbers.reserve(room);
        for (u32 i = 0; i != 1000; ++i) {
            ASSERT_EQ(numbers.add(numbered(i * i)).first, i);
            if (i == 500) {
                numbers.reserve(room);
            }
        }
        for (u32 i = 0; i != 1000; ++i) {
            ASSERT_EQ(numbers.find(numbered(i * i)), i);
        }
        EXPECT_EQ(numbers.find(numbered(3)), UuidNumbers::none);
    }
}

TEST(UuidMap, holdsWhatAnOrderedMapHolds) {
    std::mt19937 random(1);
    UuidMap<std::string> map;
    std::map<UUID, std::string> plain;
    std::vector<UUID> order;
    for (int i = 0; i != 20000; ++i) {
        const UUID uuid = numbered(static_cast<u32>(random() % 5000));
        const std::string value = std::to_string(i);
        const auto [found, isNew] = map.tryEmplace(uuid, value);
        const auto [place, alsoNew] = plain.emplace(uuid, value);
        ASSERT_EQ(isNew, alsoNew);
        ASSERT_EQ(found, place->second);
        if (isNew) {
            order.push_back(uuid);
        }
        const UUID other = numbered(static_cast<u32>(random() % 6000));
        const std::string* const known = map.find(other);
        ASSERT_EQ(known != nullptr, plain.count(other) != 0);
        if (known != nullptr) {
            ASSERT_EQ(*known, plain.at(other));
        }
    }
    EXPECT_EQ(map.size(), plain.size());
    std::vector<UUID> listed;
    map.forEach([&](const UUID& uuid, const std::string& value) {
        listed.push_back(uuid);
        EXPECT_EQ(value, plain.at(uuid));
    });
    EXPECT_EQ(listed, order);
}

TEST(UuidMap, givesAValueThatCanBeChanged) {
    UuidMap<int> map;
    ++map[numbered(1)];
    ++map[numbered(1)];
    *map.find(numbered(1)) += 3;
    EXPECT_EQ(map[numbered(1)], 5);
    EXPECT_EQ(map[numbered(2)], 0);
}

TEST(UuidMap, hashesUnderAnotherKeyEachTime) {
    static int asked;
    asked = 0;
    auto* const before = Factories::UID::setRandomSource([](u8* bytes, std::size_t size) {
        ++asked;
        std::fill_n(bytes, size, u8{1});
    });
    const UuidMap<int> one;
    const UuidMap<int> other;
    Factories::UID::setRandomSource(before);
    EXPECT_EQ(asked, 2);
}

} // namespace
} // namespace Corvid::Testing
