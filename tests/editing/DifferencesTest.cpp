#include "editing/compare/Differences.h"

#include <gmock/gmock.h>

using namespace Corvid::Editing;
using ::testing::ElementsAre;
using Kind = DifferenceKind;
using Identifiers = DifferenceIdentifiers;

namespace {

Difference difference(Kind kind, const std::string& set, const std::string& detail = "") {
    return {kind, set, "", "", detail, Identifiers::both};
}

/// Adds so many of sets of their own.
void addMany(Differences& differences, Kind kind, std::size_t count) {
    for (std::size_t i = 0; i != count; ++i) {
        differences.add(difference(kind, std::to_string(i)));
    }
}

std::vector<std::string> linesOf(const Differences& differences) {
    std::vector<std::string> lines;
    for (const Difference& each : differences) {
        const char* const seen = each.identifiers == Identifiers::both      ? "both"
                                 : each.identifiers == Identifiers::written ? "written"
                                                                            : "new";
        lines.push_back(each.set + each.detail + " " + seen);
    }
    return lines;
}

TEST(Differences, areAllCountedButListedUpToABound) {
    Differences differences(2);
    EXPECT_TRUE(differences.empty());
    addMany(differences, Kind::missingSet, 5);
    addMany(differences, Kind::extraSet, 1);
    EXPECT_THAT(linesOf(differences), ElementsAre("0 both", "1 both", "0 both"));
    EXPECT_EQ(differences.count(), 6U);
    EXPECT_EQ(differences.count(Kind::missingSet), 5U);
    EXPECT_EQ(differences.count(Kind::otherValue), 0U);
    EXPECT_EQ(differences.leftOut(), 3U);
    EXPECT_FALSE(differences.empty());
}

TEST(Differences, sayInWhichComparisonTheyAppear) {
    Differences written;
    Differences fresh;
    for (const char* set : {"A", "A", "B", "C"}) {
        written.add(difference(Kind::otherValue, set, "1"));
    }
    // What is alike but for its details is the same.
    for (const char* set : {"D", "A", "C"}) {
        fresh.add(difference(Kind::otherValue, set, "2"));
    }
    fresh.add(difference(Kind::extraSet, "A"));
    written.unite(std::move(fresh));
    EXPECT_THAT(linesOf(written),
                ElementsAre("A1 both", "A1 written", "B1 written", "C1 both", "D2 new", "A new"));
    EXPECT_EQ(written.count(), 6U);
    EXPECT_EQ(written.count(Kind::otherValue), 5U);
    EXPECT_EQ(written.leftOut(), 0U);
}

TEST(Differences, areCountedOnceWhereBothComparisonsHaveMoreThanAreListed) {
    Differences written(3);
    Differences fresh(3);
    addMany(written, Kind::missingSet, 100);
    addMany(fresh, Kind::missingSet, 101); // of which the last is in this one alone
    written.unite(std::move(fresh));
    EXPECT_EQ(written.count(), 101U);
    EXPECT_EQ(written.leftOut(), 98U);
    EXPECT_THAT(linesOf(written), ElementsAre("0 both", "1 both", "2 both"));
}

TEST(Differences, ofTheOtherComparisonFillWhatIsFree) {
    Differences written(3);
    Differences fresh(3);
    addMany(written, Kind::missingSet, 1);
    addMany(fresh, Kind::missingSet, 10);
    written.unite(std::move(fresh));
    EXPECT_THAT(linesOf(written), ElementsAre("0 both", "1 new", "2 new"));
    EXPECT_EQ(written.count(), 10U);
    EXPECT_EQ(written.leftOut(), 7U);
}

} // namespace
