#include "host/xmlutils/scan/ParserTables.h"

#include "host/xmlutils/LoadDocument.h"
#include "tests/xmlutils/Collisions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;
using ::testing::HasSubstr;

std::u16string wide(const std::string& text) { return {text.begin(), text.end()}; }

/// Where a table takes different names.
struct Table {
    const char* name;
    bool (*use)(ParserTables& tables, const std::u16string& name);
};

const Table tableCases[] = {
    {"Elements", [](ParserTables& t, const std::u16string& n) { return t.startTag(n); }},
    {"Attributes",
     [](ParserTables& t, const std::u16string& n) { return t.startTag(u"e") && t.attribute(n); }},
    {"Prefixes",
     [](ParserTables& t, const std::u16string& n) {
         return t.startTag(u"e") && t.attribute(u"xmlns:" + n);
     }},
    {"PrefixesOfElements",
     [](ParserTables& t, const std::u16string& n) { return t.startTag(n + u":e"); }},
    {"LocalNamesOfElements",
     [](ParserTables& t, const std::u16string& n) { return t.startTag(u"p:" + n); }},
    {"LocalNamesOfAttributes",
     [](ParserTables& t, const std::u16string& n) {
         return t.startTag(u"e") && t.attribute(u"p:" + n);
     }},
    {"Namespaces",
     [](ParserTables& t, const std::u16string& n) {
         return t.startTag(u"e") && t.attribute(u"xmlns") && t.namespaceUri(n);
     }},
};
void PrintTo(const Table& value, std::ostream* to) { *to << value.name; }

class TakesNames : public ::testing::TestWithParam<Table> {};

TEST_P(TakesNames, thatCollideOnlyUpToTheLimit) {
    ParserTables used;
    std::size_t taken = 0;
    for (const std::string& name : collidingNames(40)) {
        if (!GetParam().use(used, wide(name))) {
            break;
        }
        ++taken;
    }
    EXPECT_GE(taken, 32u);
    EXPECT_LE(taken, 35u);
    EXPECT_THAT(used.problem(), HasSubstr(" have the same place in a hash table of Xerces-C, "
                                          "expected at most "));
}

TEST_P(TakesNames, ofAnyNumberThatDoNotCollide) {
    ParserTables used;
    for (const std::string& name : plainNames(maximumNames, 12)) {
        ASSERT_TRUE(GetParam().use(used, wide(name))) << used.problem();
    }
    EXPECT_EQ(used.problem(), "");
}

TEST_P(TakesNames, thatAreNumbered) {
    ParserTables used;
    for (unsigned int i = 0; i != maximumNames; ++i) {
        ASSERT_TRUE(GetParam().use(used, u"a" + wide(std::to_string(i)))) << used.problem();
    }
}

TEST_P(TakesNames, thatCollideAnyNumberOfTimes) {
    ParserTables used;
    const auto names = collidingNames(32);
    for (int i = 0; i != 100; ++i) {
        for (const std::string& name : names) {
            ASSERT_TRUE(GetParam().use(used, wide(name))) << used.problem();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, TakesNames, ::testing::ValuesIn(tableCases),
                         [](const auto& test) { return test.param.name; });

/// Takes a tag with these attributes and says what is wrong with it.
std::string problemOf(ParserTables& tables, const std::vector<std::u16string>& attributes) {
    bool on = tables.startTag(u"p:e");
    for (auto name = attributes.begin(); on && name != attributes.end(); ++name) {
        on = tables.attribute(*name);
    }
    if (on) {
        tables.endOfTag();
    }
    return tables.problem();
}

std::vector<std::u16string> numbered(std::size_t count) {
    std::vector<std::u16string> names;
    for (std::size_t i = 0; i != count; ++i) {
        names.push_back(u"a" + wide(std::to_string(i)));
    }
    return names;
}

TEST(ParserTables, takesAttributesUpToTheLimit) {
    ParserTables tables;
    EXPECT_EQ(problemOf(tables, numbered(maximumOpenAttributes)), "");
    EXPECT_EQ(problemOf(tables, numbered(maximumOpenAttributes)), "") << "of the next tag";
    EXPECT_EQ(problemOf(tables, numbered(maximumOpenAttributes + 1)),
              "element p:e and those around it have 1025 attributes, expected at most 1024");
}

/// Names of two letters and more whose hashes leave the same rest when divided by a number.
std::vector<std::u16string> sharingABucket(std::size_t buckets, std::size_t count) {
    std::vector<std::u16string> names;
    for (std::uint64_t i = 0; names.size() != count; ++i) {
        std::u16string name = u"a" + wide(std::to_string(i));
        std::uint64_t hash = 0;
        for (const char16_t unit : name) {
            hash = hash * 38 + (hash >> 24U) + unit;
        }
        if (hash % buckets == 0) {
            names.push_back(name);
        }
    }
    return names;
}

struct Shared {
    const char* name;
    std::size_t buckets; ///< of a table of the attributes of one tag
    std::size_t attributes;
};
void PrintTo(const Shared& value, std::ostream* to) { *to << value.name; }

class LooksAtTheAttributesOfATag : public ::testing::TestWithParam<Shared> {};

TEST_P(LooksAtTheAttributesOfATag, byThemselves) {
    ParserTables tables;
    for (const std::string& name : plainNames(maximumNames, 12)) {
        ASSERT_TRUE(tables.startTag(u"e") && tables.attribute(wide(name)));
    }
    const auto [name, buckets, attributes] = GetParam();
    EXPECT_THAT(problemOf(tables, sharingABucket(buckets, attributes)),
                HasSubstr(" of its attributes have the same place "));
}

INSTANTIATE_TEST_SUITE_P(, LooksAtTheAttributesOfATag,
                         ::testing::Values(Shared{"Few", 57, 64}, Shared{"More", 457, 300},
                                           Shared{"ManyLookedUpAgain", 2 * 150 + 1, 150}),
                         [](const auto& test) { return test.param.name; });

} // namespace
} // namespace Corvid::XMLUtils
