#include "editing/change/MatchSets.h"

#include "editing/RenameSets.h"
#include "editing/change/FindChanges.h"
#include "tests/editing/EditedClip.h"
#include "tests/support/Model.h"

#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

/// A Preface, its content storage, a package with tracks, and a set of which no other speaks.
struct Tree : Model {
    explicit Tree(const std::vector<std::string>& trackNames) {
        reference(set("Preface", 1), "ContentStorageObject", 2);
        references(set("ContentStorage", 2), "Packages", {3});
        auto& package = set("MaterialPackage", 3);
        value(package, "PackageName", text("Title"));
        std::string items{0, 0, 0, static_cast<char>(trackNames.size()), 0, 0, 0, 16};
        Types::u8 instance = 10;
        for (const std::string& name : trackNames) {
            items.append(15, '\0');
            items.push_back(static_cast<char>(instance));
            value(set("TimelineTrack", instance), "TrackName", text(name));
            ++instance;
        }
        if (!trackNames.empty()) {
            element(package, "PackageTracks").parse(view(items));
        }
        value(set("Identification", 4), "ApplicationName", text("alone"));
    }

    static Types::UTF16String text(const std::string& name) {
        return Types::UTF16String(Platform::fromUtf8(name).c_str());
    }
};

std::string differences(Model& before, Model& after) {
    Editing::matchSets(before.partition, after.partition);
    return linesOf(Editing::findChanges(before.partition, after.partition));
}

TEST(MatchSets, leavesSetsThatHaveTheirIdentifiers) {
    Tree before({"V1", "A1"});
    Tree after({"V1", "A1"});
    EXPECT_EQ(Editing::matchSets(before.partition, after.partition), 0U);
    EXPECT_EQ(differences(before, after), "");
}

TEST(MatchSets, findsSetsByTheirPlaceInTheTree) {
    Tree before({"V1", "A1"});
    Tree after({"V1", "A1"});
    Editing::renameSets(after.partition);
    EXPECT_EQ(Editing::matchSets(before.partition, after.partition), 6U);
    EXPECT_EQ(differences(before, after), "");
}

TEST(MatchSets, prefersSetsThatSayTheSame) {
    Tree before({"V1", "A1", "A2"});
    Tree after({"V1", "A2"});
    Editing::renameSets(after.partition);
    EXPECT_EQ(differences(before, after), "changed MaterialPackage PackageTracks\n"
                                          "removed TimelineTrack\n");
    Tree more({"V0", "V1", "A1", "A2"});
    Editing::renameSets(more.partition);
    EXPECT_EQ(differences(before, more), "changed MaterialPackage PackageTracks\n"
                                         "added TimelineTrack\n");
}

TEST(MatchSets, matchesTheOthersInTheirOrder) {
    Tree before({"V1", "A1", "A2"});
    Tree after({"V1", "A9", "A2"});
    Editing::renameSets(after.partition);
    EXPECT_EQ(differences(before, after), "changed TimelineTrack TrackName\n");
}

TEST(MatchSets, doesNotMatchSetsOfOtherClasses) {
    Tree before({"V1"});
    Tree after({});
    auto& track = after.set("StaticTrack", 10);
    after.value(track, "TrackName", Tree::text("V1"));
    after.references(**(after.partition.begin() + 2), "PackageTracks", {10});
    EXPECT_EQ(differences(before, after), "added StaticTrack\nremoved TimelineTrack\n");
}

TEST(MatchSets, endsWhereReferencesGoInCircles) {
    const auto make = [](Model& model) {
        model.references(model.set("Sequence", 20), "ComponentObjects", {21, 20, 20});
        model.references(model.set("Sequence", 21), "ComponentObjects", {20, 21});
        model.reference(model.set("Preface", 1), "ContentStorageObject", 1);
    };
    Model before;
    Model after;
    make(before);
    make(after);
    Editing::renameSets(after.partition);
    Editing::matchSets(before.partition, after.partition);
}

} // namespace
} // namespace Corvid::Testing
