#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace Corvid::Testing;
using Json = nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class ToJson : public ::testing::Test {
protected:
    ToJson() { shop.write("clip.mxf", smallClip()); }

    Json jsonOf(const std::string& line) const {
        const Outcome outcome = shop.run(line);
        EXPECT_EQ(outcome.status, 0) << line << outcome.err;
        return Json::parse(outcome.out);
    }

    Workshop shop;
};

TEST_F(ToJson, writesWhatTheFileHolds) {
    const Outcome outcome = shop.run("corvid to-json clip.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json["format"], "corvid-metadata");
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["file"], "clip.mxf");
    EXPECT_EQ(json["partition"], 0);
    EXPECT_EQ(json["root"]["class"], "Preface");
    EXPECT_EQ(json["root"]["ref"], json["sets"][0]["id"]);
    EXPECT_EQ(shop.run("corvid to-json clip.mxf -o -").out, outcome.out);
}

TEST_F(ToJson, writesTheSameToAFileAndFromPipes) {
    const Json expected = jsonOf("corvid to-json clip.mxf")["sets"];
    for (const char* line :
         {"corvid to-json clip.mxf -o out.json", "corvid to-json - -o out.json <clip.mxf",
          "cat clip.mxf | corvid to-json - | cat >out.json"}) {
        shop.run("rm -f out.json");
        EXPECT_EQ(shop.run(line).status, 0) << line;
        EXPECT_EQ(Json::parse(shop.read("out.json"))["sets"], expected) << line;
    }
    EXPECT_EQ(shop.count(), 2U) << "nothing but clip and JSON";
}

TEST_F(ToJson, hasNeitherLinesNorBlanksWhenItIsCompact) {
    const Outcome outcome = shop.run("corvid to-json --compact clip.mxf");
    EXPECT_EQ(outcome.out.find('\n'), outcome.out.size() - 1);
    EXPECT_THAT(outcome.out, Not(HasSubstr("\": ")));
    EXPECT_EQ(Json::parse(outcome.out), jsonOf("corvid to-json clip.mxf"));
}

TEST_F(ToJson, putsSetsInsideTheirOwnersWhenAskedTo) {
    const Json json = jsonOf("corvid to-json --references values clip.mxf");
    EXPECT_EQ(json["references"], "values");
    ASSERT_EQ(json["sets"].size(), 1U);
    EXPECT_EQ(json["sets"][0]["properties"]["ContentStorageObject"]["class"], "ContentStorage");
}

TEST_F(ToJson, beginsWithTheSetThatIsNamed) {
    const std::string id = jsonOf("corvid to-json clip.mxf")["sets"][1]["id"].get<std::string>();
    const Json json = jsonOf("corvid to-json clip.mxf --start " + id);
    EXPECT_EQ(json["sets"][0]["id"], id);
    EXPECT_EQ(json["root"]["ref"], id);
    EXPECT_EQ(shop.run("corvid to-json clip.mxf --start 12").status, 2);
    const Outcome outcome =
        shop.run("corvid to-json clip.mxf --start 00000000-0000-0000-0000-0000000000ff");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("no set with the InstanceUID"));
}

TEST_F(ToJson, refusesNoCharacter) {
    shop.write("bad.mxf", clipWithCompany(u"a\u0001b"));
    const Outcome outcome = shop.run("corvid to-json bad.mxf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out, HasSubstr(R"("a\u0001b")"));
}

TEST_F(ToJson, writesNothingWhereDataIsRefused) {
    shop.write("old.json", std::string("old"));
    shop.write("text.mxf", std::string("no clip"));
    const Outcome outcome = shop.run("corvid to-json text.mxf -o old.json");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("text.mxf: not an MXF file"));
    EXPECT_EQ(shop.read("old.json"), "old");
    EXPECT_EQ(shop.run("corvid to-json gone.mxf").status, 3);
    EXPECT_EQ(shop.run("corvid to-json clip.mxf -o gone/out.json").status, 3);
    EXPECT_EQ(shop.run("corvid to-json clip.mxf -o clip.mxf").status, 2);
    EXPECT_EQ(shop.run("corvid to-json clip.mxf --encoding utf-16").status, 2);
}

TEST_F(ToJson, writesNothingWhereWarningsAreErrors) {
    shop.write("nameless.mxf", clipWithANamelessSet());
    EXPECT_EQ(shop.run("corvid to-json nameless.mxf").status, 0);
    const Outcome outcome = shop.run("corvid to-json nameless.mxf --warnings-as-errors");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, IsEmpty());
}

} // namespace
