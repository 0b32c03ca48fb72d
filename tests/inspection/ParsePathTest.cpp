#include "inspection/query/ParsePath.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaElement.h"

#include <gmock/gmock.h>
#include <map>

using namespace Corvid;
using namespace Corvid::Inspection;
using ::testing::HasSubstr;

namespace {

const MetaMetadata::Dictionary& dictionary() {
    static const auto builtIn = MetaMetadata::Dictionary::builtIn();
    return *builtIn;
}

Path parsed(const std::string& text) { return parsePath(text, dictionary()); }

std::string refusal(const std::string& text) {
    try {
        parsed(text);
    } catch (const Exceptions::InvalidArgument& error) {
        return Platform::toUtf8(error.message());
    }
    return "no refusal";
}

TEST(ParsePath, findsDefinitionsByTheirNames) {
    const Path path = parsed("MaterialPackage/rp210:PackageName");
    ASSERT_EQ(path.steps.size(), 2U);
    ASSERT_EQ(path.steps[0].classes.size(), 1U);
    EXPECT_EQ(tagName(*path.steps[0].classes[0]), "MaterialPackage");
    ASSERT_EQ(path.steps[1].properties.size(), 1U);
    EXPECT_EQ(tagName(*path.steps[1].properties[0]), "PackageName");
}

TEST(ParsePath, readsConditions) {
    const Path path = parsed("Track[TrackID=2,TrackName!='a, ]b',last,12]/**/*");
    const auto& conditions = path.steps.at(0).conditions;
    ASSERT_EQ(conditions.size(), 4U);
    EXPECT_EQ(conditions[0].kind, Condition::Kind::equal);
    EXPECT_EQ(conditions[0].path.text, "TrackID");
    EXPECT_EQ(conditions[0].value, "2");
    EXPECT_EQ(conditions[1].kind, Condition::Kind::unequal);
    EXPECT_EQ(conditions[1].value, "a, ]b");
    EXPECT_EQ(conditions[2].kind, Condition::Kind::last);
    EXPECT_EQ(conditions[3].kind, Condition::Kind::position);
    EXPECT_EQ(conditions[3].position, 12U);
    EXPECT_EQ(path.steps.at(1).kind, Step::Kind::anyDepth);
    EXPECT_EQ(path.steps.at(2).kind, Step::Kind::any);
}

struct Meaning {
    const char* written;
    const char* meant;
};
void PrintTo(const Meaning& each, std::ostream* out) { *out << each.written; }

class Aliases : public ::testing::TestWithParam<Meaning> {};

TEST_P(Aliases, areUnderstood) {
    const Path path = parsed(GetParam().written);
    std::vector<std::string> names;
    for (const auto* const each : path.steps.at(0).properties) {
        names.push_back(tagName(*each));
    }
    for (const auto* const each : path.steps.at(0).classes) {
        names.push_back(tagName(*each));
    }
    EXPECT_THAT(names, ::testing::Contains(GetParam().meant));
}

INSTANTIATE_TEST_SUITE_P(OfNames, Aliases,
                         ::testing::Values(Meaning{"Generic Package", "Package"},
                                           Meaning{"GenericPackage", "Package"},
                                           Meaning{"Physical Package", "SourcePackage"},
                                           Meaning{"Material Package", "MaterialPackage"},
                                           Meaning{"CompanyName", "ApplicationSupplierName"},
                                           Meaning{"Last Modified Date", "FileLastModified"}));

TEST(ParsePath, wantsThePrefixOfANameThatSeveralHave) {
    std::map<std::string, int> names;
    for (auto each = dictionary().metaElementBegin(); each != dictionary().metaElementEnd();
         ++each) {
        ++names[tagName(**each)];
    }
    std::size_t several = 0;
    for (const auto& [name, count] : names) {
        if (count > 1) {
            ++several;
            EXPECT_THAT(refusal(name), HasSubstr("several have the name " + name)) << name;
        }
    }
    EXPECT_GT(several, 0U);
}

struct Refusal {
    const char* name;
    const char* path;
    const char* message;
};
void PrintTo(const Refusal& each, std::ostream* out) { *out << each.path; }

class RefusesPath : public ::testing::TestWithParam<Refusal> {};

TEST_P(RefusesPath, withThePlaceAndWhatIsExpected) {
    EXPECT_EQ(refusal(GetParam().path), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    , RefusesPath,
    ::testing::Values(
        Refusal{"Empty", "",
                "'', character 1: expected the name of a set or property, * or **, "
                "but it ends"},
        Refusal{"EmptyStep", "Track//TrackID",
                "'Track//TrackID', character 7: expected the name of a set or property, * or **, "
                "not '/'"},
        Refusal{"Misspelt", "Track/TrackNme",
                "'Track/TrackNme', character 7: no set or property is called TrackNme; similar: "
                "TrackName, trackName"},
        Refusal{"PositionZero", "Track[0]", "'Track[0]', character 7: positions count from 1"},
        Refusal{"OpenCondition", "Track[2", "'Track[2', character 8: expected ] or ,, but it ends"},
        Refusal{"NoComparison", "Track[TrackID]",
                "'Track[TrackID]', character 14: expected = or !=, not ']'"},
        Refusal{"OpenQuote", "Track[TrackName='a]",
                "'Track[TrackName='a]', character 20: expected ' at the end of the value, but it "
                "ends"},
        Refusal{"AnyDepthInACondition", "Track[**/TrackID=2]",
                "'Track[**/TrackID=2]', character 7: ** has no place in a condition"},
        Refusal{"CharactersAreCountedNotBytes", "Track[TrackName=\xC3\xBC]\xC3\xA4",
                "'Track[TrackName=\xC3\xBC]\xC3\xA4', character 19: expected / or [, not "
                "'\xC3\xA4'"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(ParsePath, limitsHowDeepConditionsAre) {
    std::string text;
    for (int i = 0; i != 100000; ++i) {
        text += "Track[";
    }
    EXPECT_THAT(refusal(text), HasSubstr("conditions are inside each other deeper than 16"));
}

struct Change {
    const char* text;
    Assignment::Kind kind;
    const char* path;
    const char* value;
};
void PrintTo(const Change& each, std::ostream* out) { *out << each.text; }

class ReadsAssignment : public ::testing::TestWithParam<Change> {};

TEST_P(ReadsAssignment, intoPathAndValue) {
    const Assignment assignment = parseAssignment(GetParam().text, dictionary());
    EXPECT_EQ(assignment.kind, GetParam().kind);
    EXPECT_EQ(assignment.path.text, GetParam().path);
    EXPECT_EQ(assignment.value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    , ReadsAssignment,
    ::testing::Values(Change{"Track/TrackName=A1", Assignment::Kind::replace, "Track/TrackName",
                             "A1"},
                      Change{"Track[TrackID=2]/TrackName=a=b", Assignment::Kind::replace,
                             "Track[TrackID=2]/TrackName", "a=b"},
                      Change{"TrackName=", Assignment::Kind::replace, "TrackName", ""},
                      Change{"Preface/EssenceContainers+=x", Assignment::Kind::append,
                             "Preface/EssenceContainers", "x"},
                      Change{"Preface/EssenceContainers-=-=", Assignment::Kind::remove,
                             "Preface/EssenceContainers", "-="}));

TEST(ParsePath, wantsAnAssignmentToAssign) {
    try {
        parseAssignment("Track/TrackName", dictionary());
        FAIL();
    } catch (const Exceptions::InvalidArgument& error) {
        EXPECT_EQ(Platform::toUtf8(error.message()), "'Track/TrackName', character 16: expected /, "
                                                     "[, =, += or -=, but it ends");
    }
}

} // namespace
