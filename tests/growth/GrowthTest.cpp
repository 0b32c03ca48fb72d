#include "tests/growth/GrowthTable.h"
#include "tests/growth/KnownGrowth.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <numeric>
#include <set>
#include <unistd.h>

using namespace Corvid::Testing;
using ::testing::Gt;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

struct Case {
    const char* name;
    std::vector<Dimension> (*dimensions)();
};

class AllocationsGrow : public ::testing::TestWithParam<Case> {};

/// Without valgrind only what is allocated and written is counted, with greater numbers.
TEST_P(AllocationsGrow, noFasterThanTheInput) {
    for (const Dimension& dimension : GetParam().dimensions()) {
        EXPECT_THAT(mistakesIn(measureGrowth(dimension, Extent::brief, 2, 1), false), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(, AllocationsGrow,
                         ::testing::Values(Case{"Sets", setDimensions},
                                           Case{"Properties", propertyDimensions},
                                           Case{"Files", fileDimensions},
                                           Case{"Documents", documentDimensions},
                                           Case{"Content", contentDimensions},
                                           Case{"Instructions", instructionDimensions},
                                           Case{"Dictionaries", dictionaryDimensions}),
                         [](const auto& each) { return std::string(each.param.name); });

/// Allocates for each pair of the characters of its input, or for each character.
Operation faultyOperation(bool isQuadratic) {
    return {"faulty", {InputKind::xml}, [isQuadratic](const Subject& subject) -> Work {
                const std::size_t count = subject.bytes.size();
                return [=] {
                    std::vector<std::string> made;
                    for (std::size_t i = 0; i != count; ++i) {
                        made.emplace_back(isQuadratic ? i + 100 : 1000, 'x');
                    }
                    return made.size() == count;
                };
            }};
}

Growth growthOf(const Operation& operation) {
    static const Dimension dimension{"characters", InputKind::xml, 2048,
                                     [](std::size_t n) { return std::string(n, 'x'); }};
    const std::size_t least = dimension.least;
    const auto costs = measure({{&operation, &dimension, least},
                                {&operation, &dimension, 2 * least},
                                {&operation, &dimension, 4 * least}},
                               2);
    return {&operation, &dimension, least, {costs[0], costs[1], costs[2]}};
}

TEST(Growth, findsWorkForEachPair) {
    const Operation operation = faultyOperation(true);
    const Growth growth = growthOf(operation);
    EXPECT_THAT(growth.factor(Counter::allocatedBytes), Gt(3.0));
    EXPECT_FALSE(growth.isSound());
    EXPECT_THAT(mistakesIn({growth}, false),
                ::testing::ElementsAre(HasSubstr("characters, faulty: bytes")));
}

TEST(Growth, bearsWorkForEachOne) {
    const Operation operation = faultyOperation(false);
    const Growth growth = growthOf(operation);
    EXPECT_TRUE(growth.isSound()) << growth.describe();
    EXPECT_NEAR(growth.factor(Counter::allocations), 2.0, 0.05);
    EXPECT_EQ(growth.costs[0].end, Cost::End::accepted);
}

TEST(Growth, reportsACrash) {
    const pid_t test = ::getpid();
    const Operation operation{"crash", {InputKind::xml}, [test](const Subject&) -> Work {
                                  return [test]() -> bool {
                                      if (::getpid() != test) {
                                          std::_Exit(9);
                                      }
                                      return true;
                                  };
                              }};
    const Growth growth = growthOf(operation);
    EXPECT_TRUE(growth.isBroken());
    EXPECT_FALSE(growth.isSound());
    EXPECT_EQ(growth.cell(), "broken");
}

TEST(Growth, namesOnlyKnownDimensionsAndOperations) {
    std::set<std::string> names;
    for (const Dimension& dimension : dimensions()) {
        EXPECT_TRUE(names.insert(dimension.name).second) << dimension.name << " twice";
        for (const Operation& operation : operations()) {
            if (operation.takes(dimension.kind)) {
                names.insert(dimension.name + "\n" + operation.name);
            }
        }
    }
    for (const KnownGrowth& known : knownGrowths()) {
        for (const std::string& operation : known.operations) {
            EXPECT_EQ(names.count(known.dimension + "\n" + operation), 1U)
                << known.dimension << ", " << operation;
        }
    }
}

TEST(GrowthPage, hasEachDimensionAndEachOperation) {
    std::ifstream file(sourceDir() / "docs/limits.md");
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const auto begin = page.find("\n## Growth\n");
    ASSERT_NE(begin, std::string::npos);
    std::string table;
    const Dimension* before = nullptr;
    for (const Dimension& dimension : dimensions()) {
        if (before == nullptr || before->kind != dimension.kind) {
            table += "\n" + tableHead(dimension.kind);
        }
        table += tableRow({{&operations().front(), &dimension, dimension.least, {}}});
        before = &dimension;
    }
    EXPECT_EQ(namesInTable(page.substr(begin, page.find("\n## ", begin + 1) - begin)),
              namesInTable(table));
}

} // namespace
