#include "inspection/query/Query.h"
#include "inspection/query/ParsePath.h"
#include "tests/support/Model.h"

#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Inspection;
using namespace Corvid::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Strings = std::vector<std::string>;

/// The texts of the few types that the model has.
std::string textOf(const Types::SimpleDataType& value) {
    struct Text : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Types::UInt32& number) override { text = std::to_string(number.value()); }
        void visit(const Types::UTF16String& string) override {
            text = Platform::toUtf8(string.value());
        }
        void visit(const Types::UUID& id) override { text = "#" + numberOf(id); }
        void visit(const Types::StrongReference& to) override { text = numberOf(to.uuid()); }
        void visit(const Types::WeakReference& to) override { text = "~" + numberOf(to.uuid()); }
        static std::string numberOf(const Types::UUID& id) {
            return std::to_string(id.bytes().back());
        }
        std::string text;
    } visitor;
    value.accept(visitor);
    return visitor.text;
}

Types::UTF16String string(const char* text) {
    return Types::UTF16String(Platform::fromUtf8(text).c_str());
}

/// A Preface, its content storage with two packages, each with two tracks; one is of both.
class QueryTest : public ::testing::Test {
protected:
    QueryTest() {
        auto& preface = model.set("Preface", 1);
        model.reference(preface, "ContentStorageObject", 2);
        model.references(model.set("ContentStorage", 2), "Packages", {3, 4});
        auto& material = model.set("MaterialPackage", 3);
        model.value(material, "PackageName", string("Title"));
        model.references(material, "PackageTracks", {5, 6});
        model.references(model.set("SourcePackage", 4), "PackageTracks", {6, 7});
        track("TimelineTrack", 5, 1, "V1");
        track("TimelineTrack", 6, 2, "A1");
        track("StaticTrack", 7, 2, "A2");
    }

    Model::Set& track(const char* name, Types::u8 instance, Types::u32 id, const char* called) {
        auto& set = model.set(name, instance);
        model.value(set, "TrackID", Types::UInt32(id));
        model.value(set, "TrackName", string(called));
        return set;
    }

    Strings texts(const std::string& text) {
        const Path path = parsePath(text, model.dictionary());
        Strings all;
        for (const Place& place : Query(model.partition, textOf).find(path)) {
            for (const std::string& each : textsOf(place, textOf)) {
                all.push_back(each);
            }
        }
        return all;
    }

    Model model;
};

TEST_F(QueryTest, findsValuesOfSetsByTheirClass) {
    EXPECT_THAT(texts("MaterialPackage/PackageName"), ElementsAre("Title"));
    EXPECT_THAT(texts("TimelineTrack/TrackName"), ElementsAre("V1", "A1"));
    EXPECT_THAT(texts("TrackName"), ElementsAre("V1", "A1", "A2"));
}

TEST_F(QueryTest, takesAbstractClassesForAllThatInheritFromThem) {
    EXPECT_THAT(texts("Track/TrackName"), ElementsAre("V1", "A1", "A2"));
    EXPECT_THAT(texts("Package"), ElementsAre("#3", "#4"));
}

TEST_F(QueryTest, followsStrongReferences) {
    EXPECT_THAT(texts("MaterialPackage/TimelineTrack/TrackID"), ElementsAre("1", "2"));
    EXPECT_THAT(texts("MaterialPackage/PackageTracks/TrackID"), ElementsAre("1", "2"));
    EXPECT_THAT(texts("SourcePackage/PackageTracks/StaticTrack/TrackName"), ElementsAre("A2"));
    EXPECT_THAT(texts("Preface/ContentStorage/SourcePackage/Track"), ElementsAre("#6", "#7"));
    EXPECT_THAT(texts("MaterialPackage/PackageTracks"), ElementsAre("5", "6"));
}

TEST_F(QueryTest, givesASetOnceHoweverManyReferToIt) {
    EXPECT_THAT(texts("Package/Track"), ElementsAre("#5", "#6", "#7"));
    EXPECT_THAT(texts("Package/PackageTracks/TrackName"), ElementsAre("V1", "A1", "A2"));
}

TEST_F(QueryTest, keepsWhatFulfilsConditions) {
    EXPECT_THAT(texts("Track[TrackID=2]/TrackName"), ElementsAre("A1", "A2"));
    EXPECT_THAT(texts("Track[TrackID!=2]/TrackName"), ElementsAre("V1"));
    EXPECT_THAT(texts("Track[TrackID=2,TrackName=A2]"), ElementsAre("#7"));
    EXPECT_THAT(texts("Package[Track/TrackName=V1]"), ElementsAre("#3"));
    EXPECT_THAT(texts("Package[PackageTracks[last]/TrackName=A2]"), ElementsAre("#4"));
    EXPECT_THAT(texts("Package[Track[TrackID=2,1]/TrackName='A1']"), ElementsAre("#3", "#4"));
    EXPECT_THAT(texts("Track[TrackID=3]"), IsEmpty());
}

TEST_F(QueryTest, countsPositionsFromOneBelowEachSet) {
    EXPECT_THAT(texts("Track[2]"), ElementsAre("#6"));
    EXPECT_THAT(texts("Track[last]"), ElementsAre("#7"));
    EXPECT_THAT(texts("Track[4]"), IsEmpty());
    EXPECT_THAT(texts("Package/Track[2]"), ElementsAre("#6", "#7"));
    EXPECT_THAT(texts("Package/PackageTracks[1]/TrackName"), ElementsAre("V1", "A1"));
    EXPECT_THAT(texts("Package/PackageTracks[TrackID=2,1]"), ElementsAre("6", "6"));
    EXPECT_THAT(texts("MaterialPackage/PackageName[1]"), ElementsAre("Title"));
    EXPECT_THAT(texts("MaterialPackage/PackageName[2]"), IsEmpty());
}

TEST_F(QueryTest, knowsStepsForAnything) {
    EXPECT_THAT(texts("MaterialPackage/*"), ElementsAre("#3", "Title", "5", "6"));
    EXPECT_THAT(texts("MaterialPackage/*/TrackName"), ElementsAre("V1", "A1"));
    EXPECT_THAT(texts("MaterialPackage/*/*"), ElementsAre("#5", "#6"));
    EXPECT_THAT(texts("*"), ElementsAre("#1", "#2", "#3", "#5", "#6", "#4", "#7"));
    EXPECT_THAT(texts("**"), ElementsAre("#1", "#2", "#3", "#5", "#6", "#4", "#7"));
    EXPECT_THAT(texts("Preface/**/TrackName"), ElementsAre("V1", "A1", "A2"));
    EXPECT_THAT(texts("SourcePackage/**"), ElementsAre("#4", "#6", "#7"));
    EXPECT_THAT(texts("**/StaticTrack/TrackName"), ElementsAre("A2"));
    EXPECT_THAT(texts("Preface/**[2]"), ElementsAre("#2"));
}

TEST_F(QueryTest, findsPropertiesOfOtherClasses) {
    auto& set = track("TimelineTrack", 8, 9, "X");
    auto& odd = model.misplaced<Metadata::SimpleElement>(set, "PackageName");
    odd.set(string("odd").clone());
    model.unknown(set, 0x8123, "bytes");
    EXPECT_THAT(texts("Track[TrackID=9]/PackageName"), ElementsAre("odd"));
    EXPECT_THAT(texts("Track[TrackID=9]/*"), ElementsAre("#8", "9", "X", "odd"));
}

TEST_F(QueryTest, endsWhereReferencesGoInCircles) {
    auto& first = model.set("Sequence", 20);
    model.references(first, "ComponentObjects", {21, 20});
    model.references(model.set("Sequence", 21), "ComponentObjects", {20, 21});
    EXPECT_THAT(texts("Sequence/**"), ElementsAre("#20", "#21"));
    EXPECT_THAT(texts("Sequence/Sequence/Sequence/Sequence"), ElementsAre("#21", "#20"));
}

/// A hundred sets that all refer to all: without what is known of a set already, four steps would
/// be followed a hundred million times.
TEST_F(QueryTest, looksAtASetOnceInAStep) {
    constexpr Types::u8 count = 100;
    std::string items{0, 0, 0, static_cast<char>(count), 0, 0, 0, 16};
    for (Types::u8 i = 0; i != count; ++i) {
        items.append(15, '\0');
        items.push_back(static_cast<char>(100 + i));
    }
    for (Types::u8 i = 0; i != count; ++i) {
        auto& set = model.set("Sequence", static_cast<Types::u8>(100 + i));
        ASSERT_TRUE(model.element(set, "ComponentObjects").parse(Model::view(items)));
    }
    std::size_t asked = 0;
    const auto counted = [&asked](const Types::SimpleDataType& value) {
        ++asked;
        return textOf(value);
    };
    const Path path = parsePath(
        "Sequence[Sequence/Sequence/ComponentObjects/Sequence/ComponentLength=1]/Sequence/"
        "Sequence/Sequence",
        model.dictionary());
    EXPECT_THAT(Query(model.partition, counted).find(path), IsEmpty());
    const Path all =
        parsePath("Sequence[Sequence/Sequence/Sequence/Sequence/InstanceUID!='']/Sequence/Sequence",
                  model.dictionary());
    EXPECT_EQ(Query(model.partition, counted).find(all).size(), count);
    EXPECT_LE(asked, std::size_t{count});
}

} // namespace
