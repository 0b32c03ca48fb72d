#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace Corvid::Testing;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

class Set : public ::testing::Test {
protected:
    Set() {
        std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf",
                                   shop.path() / "clip.mxf");
        before = shop.read("clip.mxf");
    }

    Outcome run(const std::string& line) const { return shop.run(line); }
    std::string get(const std::string& path) const {
        return run("corvid get clip.mxf '" + path + "'").out;
    }

    const Workshop shop;
    std::string before;
};

TEST_F(Set, changesAValueInPlace) {
    const std::size_t files = shop.count();
    const Outcome outcome = run("corvid set clip.mxf 'MaterialPackage/PackageName=New title'");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("in place: "), HasSubstr("partition 0 (header")));
    EXPECT_EQ(shop.read("clip.mxf").size(), before.size());
    EXPECT_EQ(shop.count(), files);
    EXPECT_EQ(get("MaterialPackage/PackageName"), "New title\n");
    EXPECT_EQ(get("Identification[last]/ProductName"), "corvid\n");
    EXPECT_EQ(run("corvid check clip.mxf").status, 0);
}

TEST_F(Set, writesNothingWhereTheValueIsTheSame) {
    const Outcome outcome =
        run("corvid set clip.mxf \"MaterialPackage/PackageName=$(corvid get clip.mxf "
            "MaterialPackage/PackageName)\" \"Preface/EssenceContainers=$(corvid get clip.mxf "
            "Preface/EssenceContainers)\"");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "no change\n");
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

TEST_F(Set, addsAPropertyThatTheClassHas) {
    EXPECT_EQ(
        run("corvid set clip.mxf 'MaterialPackage/TimelineTrack[TrackID=2]/TrackName=V1' --all")
            .status,
        0);
    EXPECT_EQ(get("MaterialPackage/TimelineTrack/TrackName"), "V1\n");
    EXPECT_EQ(get("TrackName"), "V1\n");
    EXPECT_EQ(run("corvid check clip.mxf").status, 0);
}

TEST_F(Set, writesAnEditedCopyAndLeavesTheClipAlone) {
    EXPECT_EQ(run("corvid set clip.mxf MaterialPackage/PackageName=New -o new.mxf").status, 0);
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run("corvid get new.mxf MaterialPackage/PackageName").out, "New\n");
}

TEST_F(Set, showsWhatWouldChange) {
    const Outcome outcome =
        run("corvid set clip.mxf MaterialPackage/PackageName=New --dry-run --no-identification");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out,
                AllOf(HasSubstr("changed MaterialPackage ad.ab.44.24"),
                      HasSubstr("  PackageName: \"Test picture and tone\" -> \"New\"\n"),
                      HasSubstr("in place: ")));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

TEST_F(Set, isTheSameEditAsThatOfADocument) {
    run("cp clip.mxf other.mxf; corvid to-xml clip.mxf | sed 's/Test picture and tone/Camera 1/' "
        "| corvid apply - other.mxf --in-place --no-identification");
    run("corvid set clip.mxf 'MaterialPackage/PackageName=Camera 1' --no-identification");
    EXPECT_TRUE(shop.read("clip.mxf") == shop.read("other.mxf"));
}

TEST_F(Set, keepsARecordOfTheEditAndUndoesIt) {
    EXPECT_EQ(run("corvid set clip.mxf MaterialPackage/PackageName=New --log log.json --undo undo")
                  .status,
              0);
    const auto json = nlohmann::json::parse(shop.read("log.json"));
    EXPECT_EQ(json["assignments"], nlohmann::json({"MaterialPackage/PackageName=New"}));
    EXPECT_EQ(json["way"], "in-place");
    EXPECT_EQ(run("corvid recover clip.mxf --from undo").status, 0);
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

TEST_F(Set, guardsWhatTheFileIsMadeOf) {
    const std::string line = "corvid set clip.mxf 'MaterialPackage/TimelineTrack[1]/EditRate=24/1'";
    const Outcome outcome = run(line);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("TimelineTrack/EditRate; --allow-technical"));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run(line + " --allow-technical").status, 0);
    EXPECT_EQ(get("MaterialPackage/TimelineTrack[1]/EditRate"), "24/1\n");
}

TEST_F(Set, changesSeveralValuesOnlyWhereAsked) {
    const Outcome outcome = run("corvid set clip.mxf Timecode/StartTimecode=0");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                HasSubstr("corvid: clip.mxf: Timecode/StartTimecode: leads to 2 values, in "
                          "Timecode ad.ab.44.24.2f.25.4d.c7.92.ff.00.04.00.00.00.00, Timecode "));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run("corvid set clip.mxf Timecode/StartTimecode=0 --all").status, 0);
    EXPECT_EQ(get("Timecode/StartTimecode"), "0\n0\n");
}

TEST_F(Set, doesAllOfAnEditOrNothing) {
    EXPECT_EQ(
        run("corvid set clip.mxf MaterialPackage/PackageName=New Preface/FormatVersion=x").status,
        1);
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run("corvid set clip.mxf MaterialPackage/PackageName=A "
                  "MaterialPackage/PackageName=B 'SourcePackage[last]/PackageName=C'")
                  .status,
              0);
    EXPECT_EQ(get("Package/PackageName"), "B\nC\n");
}

TEST_F(Set, changesListsItemByItem) {
    const std::string scheme = "06.0e.2b.34.04.01.01.0b.0d.01.07.01.0b.01.01.0";
    const auto schemes = [&](const std::string& change) {
        const Outcome outcome =
            run("corvid set clip.mxf '" + change + "' --allow-technical --no-identification");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return get("Preface/DescriptiveSchemes");
    };
    const std::string one = scheme + "1";
    const std::string two = scheme + "2";
    const std::string three = scheme + "3";
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes+=" + one), one + "\n");
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes+=" + two + "\n" + three),
              one + "\n" + two + "\n" + three + "\n");
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes[2]=" + one),
              one + "\n" + one + "\n" + three + "\n");
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes-=" + one), three + "\n");
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes=" + two + "\n" + one), two + "\n" + one + "\n");
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes[1]-="), one + "\n");
    EXPECT_EQ(schemes("Preface/DescriptiveSchemes="), "");
    EXPECT_EQ(run("corvid check clip.mxf").status, 0);
}

TEST_F(Set, removesAProperty) {
    EXPECT_EQ(run("corvid set clip.mxf MaterialPackage/PackageName-=").status, 0);
    EXPECT_EQ(run("corvid get clip.mxf MaterialPackage/PackageName").status, 1);
    EXPECT_EQ(run("corvid check clip.mxf").status, 0);
}

struct Refusal {
    const char* name;
    const char* assignment;
    int status;
    const char* message;
};
void PrintTo(const Refusal& each, std::ostream* out) { *out << each.assignment; }

class SetRefuses : public Set, public ::testing::WithParamInterface<Refusal> {};

TEST_P(SetRefuses, andLeavesTheClipAlone) {
    const Outcome outcome = run(std::string("corvid set clip.mxf '") + GetParam().assignment + "'");
    EXPECT_EQ(outcome.status, GetParam().status);
    EXPECT_EQ(outcome.err, std::string("corvid: ") + GetParam().message + "\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

INSTANTIATE_TEST_SUITE_P(
    , SetRefuses,
    ::testing::Values(
        Refusal{"NoAssignment", "MaterialPackage/PackageName", 2,
                "'MaterialPackage/PackageName', character 28: expected /, [, =, += or -=, but it "
                "ends"},
        Refusal{"ASet", "MaterialPackage=x", 2,
                "'MaterialPackage' does not end with the name of a property"},
        Refusal{"AnyProperty", "MaterialPackage/*=x", 2,
                "'MaterialPackage/*' does not end with the name of a property"},
        Refusal{"NoProperty", "Preface/PackageName=x", 1,
                "clip.mxf: Preface/PackageName: leads to no property of a set"},
        Refusal{"NoItem", "Preface/EssenceContainers[4]=x", 1,
                "clip.mxf: Preface/EssenceContainers[4]: leads to no property of a set"},
        Refusal{"WrongValue", "Preface/FormatVersion=1.3", 1,
                "clip.mxf: Preface/FormatVersion: rp210:FormatVersion: '1.3', expected a whole "
                "number from 0 to 65535"},
        Refusal{"NoListToAppendTo", "MaterialPackage/PackageName+=x", 1,
                "clip.mxf: MaterialPackage/PackageName: is no list, so nothing can be appended"},
        Refusal{"NoItemToRemove", "Preface/EssenceContainers-=x", 1,
                "clip.mxf: Preface/EssenceContainers: has no item 'x' that could be removed"},
        Refusal{"AnotherValueToRemove", "MaterialPackage/PackageName-=x", 1,
                "clip.mxf: MaterialPackage/PackageName: is 'Test picture and tone' and not 'x', so "
                "it is not removed"},
        Refusal{"RequiredProperty", "Preface/FormatVersion-=", 1,
                "clip.mxf: Preface/FormatVersion: the property is required in a set of its class"},
        Refusal{"InstanceUID",
                "Preface/InstanceUID=ad.ab.44.24.2f.25.4d.c7.92.ff.00.0b.00.00.00.01", 1,
                "clip.mxf: Preface/InstanceUID: sets are known by their InstanceUIDs, which "
                "stay"}),
    [](const auto& each) { return std::string(each.param.name); });

} // namespace
