#include "XMLBuilder/reader/InstanceNameTable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace Corvid::XMLBuilder {
namespace {

/// Different for each number below 2^32.
Types::UUID identifier(std::size_t number) {
    std::array<Types::u8, 16> bytes{};
    for (std::size_t i = 0; i != 4; ++i) {
        bytes[i] = static_cast<Types::u8>(number >> (8 * i));
    }
    return Types::UUID(bytes);
}

TEST(InstanceNameTable, agreesWithAMapOfText) {
    std::map<std::u16string, Types::UUID> expected;
    InstanceNameTable table;
    std::mt19937 random(1);
    // Few characters in short names, so that names come up again, also as the beginning of others.
    for (std::size_t i = 0; i != 200000; ++i) {
        std::u16string name(random() % 17, u'a');
        for (char16_t& character : name) {
            character = static_cast<char16_t>(u'a' + random() % 2);
        }
        const auto make = [&] { return identifier(i); };
        EXPECT_EQ(table.findOrAdd(name, make),
                  expected.try_emplace(name, identifier(i)).first->second);
    }
    EXPECT_EQ(table.size(), expected.size());
    EXPECT_GT(table.size(), 40000U);
}

TEST(InstanceNameTable, keepsItsOwnCopyOfAName) {
    InstanceNameTable table;
    std::u16string name = u"a name that is longer than a short string holds in itself";
    table.findOrAdd(name, [] { return identifier(1); });
    name[0] = u'b';
    table.findOrAdd(name, [] { return identifier(2); });
    name[0] = u'a';
    EXPECT_EQ(table.findOrAdd(name, [] { return identifier(3); }), identifier(1));
}

} // namespace
} // namespace Corvid::XMLBuilder
