#include "tests/tool/RunCommand.h"

#include <cstring>
#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

using namespace Corvid::Testing;
using ::testing::HasSubstr;

namespace {

class Get : public ::testing::Test {
protected:
    Get() {
        std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf",
                                   shop.path() / "clip.mxf");
    }

    const Workshop shop;
};

struct Answer {
    const char* name;
    const char* paths;
    const char* values;
};
void PrintTo(const Answer& each, std::ostream* out) { *out << each.paths; }

class GetPrints : public Get, public ::testing::WithParamInterface<Answer> {};

TEST_P(GetPrints, oneValueOnALine) {
    const Outcome outcome = shop.run(std::string("corvid get clip.mxf ") + GetParam().paths);
    EXPECT_EQ(outcome.out, GetParam().values);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

INSTANTIATE_TEST_SUITE_P(
    , GetPrints,
    ::testing::Values(Answer{"Text", "MaterialPackage/PackageName", "Test picture and tone\n"},
                      Answer{"Number", "'TimelineTrack[2]/TrackID'", "2\n"},
                      Answer{"Rational", "'MaterialPackage/TimelineTrack[1]/EditRate'", "25/1\n"},
                      Answer{"Timestamp", "Preface/FileLastModified", "2024-01-01 12:00:00.000\n"},
                      Answer{"ProductVersion", "Identification/ToolkitVersion", "0.0.0.0.0\n"},
                      Answer{"Label", "Preface/OperationalPattern",
                             "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00\n"},
                      Answer{"ItemOfAList", "'Preface/EssenceContainers[last]'",
                             "06.0e.2b.34.04.01.01.03.0d.01.03.01.02.7f.01.00\n"},
                      Answer{"Reference", "Preface/ContentStorageObject",
                             "ad.ab.44.24.2f.25.4d.c7.92.ff.00.0d.00.00.00.00\n"},
                      Answer{"Set", "ContentStorage",
                             "ad.ab.44.24.2f.25.4d.c7.92.ff.00.0d.00.00.00.00\n"},
                      Answer{"Alias", "'Identification/Company Name'", "Corvid\n"},
                      Answer{"Several", "Identification/CompanyName Timecode/StartTimecode",
                             "Corvid\n900000\n900000\n"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(Get, saysWhereAPathLeadsToNoValue) {
    const Outcome outcome =
        shop.run("corvid get clip.mxf TimelineTrack/TrackName MaterialPackage/PackageName");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "Test picture and tone\n");
    EXPECT_EQ(outcome.err, "corvid: clip.mxf: TimelineTrack/TrackName: no value\n");
}

TEST_F(Get, refusesAPathThatIsNone) {
    const Outcome outcome = shop.run("corvid get clip.mxf Preface/OperationalPatern");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "corvid: 'Preface/OperationalPatern', character 9: no set or property is "
              "called OperationalPatern; similar: OperationalPattern\n");
}

TEST_F(Get, endsAsOtherVerbsWhereThereIsNoFile) {
    EXPECT_EQ(shop.run("corvid get none.mxf Preface/Version").status, 3);
}

TEST_F(Get, printsTheSameForPrograms) {
    const Outcome outcome =
        shop.run("corvid get --json clip.mxf 'Preface/EssenceContainers[2]' TrackName");
    EXPECT_EQ(outcome.status, 1);
    const auto json = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(json["file"], "clip.mxf");
    const auto& answer = json["answers"][0];
    EXPECT_EQ(answer["path"], "Preface/EssenceContainers[2]");
    ASSERT_EQ(answer["values"].size(), 1U);
    EXPECT_EQ(answer["values"][0]["set"], "Preface");
    EXPECT_EQ(answer["values"][0]["instanceUID"],
              "ad.ab.44.24.2f.25.4d.c7.92.ff.00.0b.00.00.00.00");
    EXPECT_EQ(answer["values"][0]["property"], "EssenceContainers");
    EXPECT_EQ(answer["values"][0]["position"], 2);
    EXPECT_EQ(answer["values"][0]["value"], "06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.03.00");
    EXPECT_TRUE(json["answers"][1]["values"].empty());
}

TEST_F(Get, givesProgramsTheTextAsItIs) {
    shop.write("odd.mxf", clipWithCompany(u"two\nlines \x1b[31m"));
    EXPECT_EQ(shop.run("corvid get odd.mxf Identification/CompanyName").out,
              "two\nlines \x1b[31m\n");
}

/// A thousand sets that all refer to all: each is looked at once in a step.
TEST_F(Get, copesWithReferencesToAll) {
    constexpr unsigned count = 1000;
    std::vector<Bytes> all;
    for (unsigned i = 0; i != count; ++i) {
        all.push_back(uuid(100 + i));
    }
    const auto sequence = [&all](unsigned instance) {
        return set(structuralKey(0x0F), instance, {property(0x1001, batch(all, 16))});
    };
    std::vector<Bytes> sets{smallMetadata()};
    for (unsigned i = 0; i != count; ++i) {
        sets.push_back(sequence(100 + i));
    }
    shop.write("all.mxf", MxfBuilder().add(headerPartition(join(sets))).build());
    const Outcome outcome =
        shop.run("ulimit -t 20; corvid get all.mxf "
                 "'Sequence[Sequence/Sequence/Sequence/ComponentLength=1]/Sequence/Sequence/**'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("no value"));
}

std::string unescaped(std::string text) {
    const std::pair<const char*, const char*> entities[] = {
        {"&lt;", "<"},   {"&gt;", ">"},   {"&quot;", "\""}, {"&#x9;", "\t"}, {"&#9;", "\t"},
        {"&#xD;", "\r"}, {"&#xA;", "\n"}, {"&#10;", "\n"},  {"&#13;", "\r"}, {"&amp;", "&"}};
    for (const auto& [entity, character] : entities) {
        for (auto at = text.find(entity); at != std::string::npos; at = text.find(entity, at + 1)) {
            text.replace(at, std::strlen(entity), character);
        }
    }
    return text;
}

/// Values by the InstanceUID of their set and the property.
using Values = std::multimap<std::pair<std::string, std::string>, std::string>;

/// Those that have text on a line of their own in a document.
Values valuesOf(const std::string& document) {
    Values values;
    const std::regex set(R"~(  <\w+:\w+ .*rp210:InstanceUID="([^"]*)".*>)~");
    const std::regex property(R"(    <(\w+):(\w+)>(.*)</\1:\2>)");
    const std::regex list(R"(    <\w+:(\w+)>)");
    const std::regex item(R"(      <(\w+:Element)>(.*)</\1>)");
    std::istringstream lines(document);
    std::string id;
    std::string name;
    std::smatch found;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_match(line, found, set)) {
            id = found[1];
        } else if (std::regex_match(line, found, property)) {
            values.emplace(std::pair(id, found[2].str()), unescaped(found[3]));
        } else if (std::regex_match(line, found, list)) {
            name = found[1];
        } else if (std::regex_match(line, found, item)) {
            values.emplace(std::pair(id, name), unescaped(found[2]));
        }
    }
    return values;
}

TEST_F(Get, givesWhatDocumentsHave) {
    std::vector<std::filesystem::path> clips{sourceDir() / "examples" / "sample.mxf"};
    if (!samplesDir().empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
            if (entry.path().extension() == ".mxf") {
                clips.push_back(entry.path());
            }
        }
    }
    for (const auto& clip : clips) {
        const auto expected =
            valuesOf(shop.run("corvid to-xml --replace-invalid " + clip.string()).out);
        const auto json =
            nlohmann::json::parse(shop.run("corvid get --json " + clip.string() + " '*/*'").out);
        Values values;
        for (const auto& value : json["answers"][0]["values"]) {
            values.emplace(std::pair(value["instanceUID"].get<std::string>(),
                                     value["property"].get<std::string>()),
                           value["value"].get<std::string>());
        }
        EXPECT_GT(expected.size(), 10U) << clip;
        for (const auto& [place, text] : expected) {
            if (text.find("\xEF\xBF\xBD") != std::string::npos) {
                continue; // The document could not have the character that is there.
            }
            const auto [begin, end] = values.equal_range(place);
            EXPECT_TRUE(std::any_of(
                begin, end, [&text = text](const auto& each) { return each.second == text; }))
                << clip << " " << place.first << " " << place.second << " " << text;
        }
    }
}

} // namespace
