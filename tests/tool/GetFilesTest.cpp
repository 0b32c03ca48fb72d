#include "tests/tool/RunCommand.h"

#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

using namespace Corvid::Testing;
using ::testing::HasSubstr;

namespace {

/// Asks about several files, about the essence, and in the form of tables.
class GetFiles : public ::testing::Test {
protected:
    GetFiles() {
        std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf",
                                   shop.path() / "clip.mxf");
        std::filesystem::copy_file(shop.path() / "clip.mxf", shop.path() / "copy.mxf");
        shop.write("named.mxf", clipWithCompany(u"=cmd|' /C calc'!A0"));
        shop.write("odd.mxf", clipWithCompany(u"one, \"two\"\nthree"));
        shop.write("none.mxf", "no MXF");
    }

    const Workshop shop;
};

struct Form {
    const char* name;
    const char* arguments;
    std::string out;
    int status = 0;
};
void PrintTo(const Form& each, std::ostream* out) { *out << each.arguments; }

class GetFilesPrints : public GetFiles, public ::testing::WithParamInterface<Form> {};

TEST_P(GetFilesPrints, whatIsAskedFor) {
    const Outcome outcome = shop.run(std::string("corvid get ") + GetParam().arguments);
    EXPECT_EQ(outcome.out, GetParam().out) << outcome.err;
    EXPECT_EQ(outcome.status, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    , GetFilesPrints,
    ::testing::Values(
        Form{"Fields", "clip.mxf @title @start @duration @seconds",
             "Test picture and tone\n10:00:00:00\n00:00:01:00\n1.000\n"},
        Form{"FieldsOfPictures", "clip.mxf @width @height @rate @codec",
             "320\n240\n25\nMPEG-2 MP@ML long GOP\n"},
        Form{"FieldsOfSound", "clip.mxf @channels @sample-rate @encrypted", "2\n48000\nno\n"},
        Form{"FieldAndPath", "clip.mxf @file MaterialPackage/PackageName",
             "clip.mxf\nTest picture and tone\n"},
        Form{"SeveralFiles", "-q @file -q @pattern clip.mxf copy.mxf",
             "clip.mxf\nOP1a\ncopy.mxf\nOP1a\n"},
        Form{"APathTwice", "-q @file clip.mxf ./clip.mxf clip.mxf", "clip.mxf\n"},
        Form{"QueriesBehindFiles", "clip.mxf copy.mxf -q @width", "320\n320\n"},
        Form{"WithFilename", "--with-filename -q @width clip.mxf ./copy.mxf",
             "clip.mxf:320\n./copy.mxf:320\n"},
        Form{"Zeros", "-0 -q @width clip.mxf copy.mxf",
             std::string("320\0"
                         "320\0",
                         8)},
        Form{"Csv", "--csv -q @file -q Preface/EssenceContainers -q @width clip.mxf",
             "@file,Preface/EssenceContainers,@width\r\n"
             "clip.mxf,06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01; "
             "06.0e.2b.34.04.01.01.01.0d.01.03.01.02.06.03.00; "
             "06.0e.2b.34.04.01.01.03.0d.01.03.01.02.7f.01.00,320\r\n"},
        Form{"CsvWithAnEmptyCell", "--csv -q @file -q @title -q @sets odd.mxf clip.mxf",
             "@file,@title,@sets\r\nodd.mxf,,2\r\nclip.mxf,Test picture and tone,27\r\n", 1},
        Form{"CsvWithQuotes", "--csv -q Identification/CompanyName odd.mxf",
             "Identification/CompanyName\r\n\"one, \"\"two\"\"\nthree\"\r\n"},
        Form{"CsvWithAFormula", "--csv -q Identification/CompanyName named.mxf",
             "Identification/CompanyName\r\n=cmd|' /C calc'!A0\r\n"},
        Form{"SpreadsheetWithAFormula", "--spreadsheet -q Identification/CompanyName named.mxf",
             "Identification/CompanyName\r\n'=cmd|' /C calc'!A0\r\n"},
        Form{"SpreadsheetWithAField", "--spreadsheet -q @width clip.mxf", "'@width\r\n320\r\n"},
        Form{"IfEqual", "-q @file --if @width=320 clip.mxf odd.mxf", "clip.mxf\n"},
        Form{"IfUnequal", "-q @file --if '@width!=320' clip.mxf odd.mxf", "odd.mxf\n"},
        Form{"IfStated", "-q @file --if @width clip.mxf odd.mxf", "clip.mxf\n"},
        Form{"IfPath", "-q @file --if 'TimelineTrack[TrackID=2]/EditRate=25/1' clip.mxf odd.mxf",
             "clip.mxf\n"},
        Form{"IfQuoted", "-q @file --if 'Identification[CompanyName=\"a=]b\"]!=x' clip.mxf",
             "clip.mxf\n"},
        Form{"CsvOfOneEmptyCell", "--csv -q @title odd.mxf clip.mxf",
             "@title\r\n\"\"\r\nTest picture and tone\r\n", 1},
        Form{"IfEqualToAQuotedValue", "-q @file --if '@title = \"Test picture and tone\"' clip.mxf",
             "clip.mxf\n"},
        Form{"IfEqualToAValueWithBlanks",
             "-q @file --if '@title =  Test picture and tone ' clip.mxf", "clip.mxf\n"},
        Form{"IfConditionWithBlanks",
             "-q @file --if 'TimelineTrack[TrackID = \"2\" ] / EditRate = 25/1' clip.mxf",
             "clip.mxf\n"},
        Form{"IfTwoHold", "-q @file --if @width=320 --if @height=240 clip.mxf", "clip.mxf\n"},
        Form{"IfOneOfTwoHolds", "-q @file --if @width=320 --if @height=1 clip.mxf", ""}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(GetFiles, goesOnBehindAFileThatIsNone) {
    const Outcome outcome = shop.run("corvid get -q @file none.mxf missing.mxf clip.mxf");
    EXPECT_EQ(outcome.out, "clip.mxf\n");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("none.mxf"));
    EXPECT_THAT(outcome.err, HasSubstr("missing.mxf"));
}

TEST_F(GetFiles, printsALineOfJsonForEach) {
    const Outcome outcome =
        shop.run("corvid get --json -q @title -q MaterialPackage/PackageName clip.mxf copy.mxf");
    std::istringstream lines(outcome.out);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const auto json = nlohmann::json::parse(line);
        EXPECT_EQ(json["answers"][0]["field"], "@title");
        EXPECT_EQ(json["answers"][0]["values"],
                  nlohmann::json::parse(R"([{"value": "Test picture and tone"}])"));
        EXPECT_EQ(json["answers"][1]["path"], "MaterialPackage/PackageName");
    }
    EXPECT_EQ(count, 2);
}

struct Wrong {
    const char* name;
    const char* arguments;
    const char* err;
};
void PrintTo(const Wrong& each, std::ostream* out) { *out << each.arguments; }

class GetFilesRefuses : public GetFiles, public ::testing::WithParamInterface<Wrong> {};

TEST_P(GetFilesRefuses, aWrongCommandLine) {
    const Outcome outcome = shop.run(std::string("corvid get ") + GetParam().arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().err));
}

INSTANTIATE_TEST_SUITE_P(
    , GetFilesRefuses,
    ::testing::Values(Wrong{"UnknownField", "clip.mxf @titel",
                            "there is no field @titel, expected one of @file @title"},
                      Wrong{"UnknownFieldOfACondition", "clip.mxf @title --if @titel=x",
                            "there is no field @titel"},
                      Wrong{"ComparisonWithoutIf", "clip.mxf @title=x",
                            "'@title=x': a comparison belongs to --if"},
                      Wrong{"QuoteWithoutEnd", "clip.mxf @title --if '@title=\"x'",
                            "character 10: expected \" at the end of the value, but it ends"},
                      Wrong{"TextBehindAQuote", "clip.mxf @title --if '@title=\"x\"y'",
                            "character 11: expected nothing after the value in quotes, not 'y'"},
                      Wrong{"FilesWithoutQ", "clip.mxf odd.mxf @title",
                            "odd.mxf is a file; with several files, put -q in front of each query"},
                      Wrong{"NoQuery", "clip.mxf", "QUERY is required"},
                      Wrong{"NoFile", "-q @title", "CLIP.mxf is required"},
                      Wrong{"CsvAndJson", "--csv --json clip.mxf @title", "--csv"},
                      Wrong{"CsvAndZeros", "--csv -0 clip.mxf @title", "--csv"}),
    [](const auto& each) { return std::string(each.param.name); });

/// The names in a message or a page.
std::set<std::string> fieldsIn(const std::string& text) {
    std::set<std::string> names;
    const std::regex name("@[a-z][a-z-]*");
    for (std::sregex_iterator at(text.begin(), text.end(), name), end; at != end; ++at) {
        names.insert(at->str());
    }
    return names;
}

TEST_F(GetFiles, knowsTheFieldsThatItsPageNames) {
    const std::string message = shop.run("corvid get clip.mxf @").err;
    std::ifstream page(sourceDir() / "docs" / "get.md");
    std::stringstream text;
    text << page.rdbuf();
    EXPECT_EQ(fieldsIn(text.str()), fieldsIn(message));
}

/// What info shows of a file, as far as there are fields for it.
TEST_F(GetFiles, saysWhatInfoSays) {
    std::vector<std::filesystem::path> clips{shop.path() / "clip.mxf"};
    if (!samplesDir().empty()) {
        for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
            if (entry.path().extension() == ".mxf") {
                clips.push_back(entry.path());
            }
        }
    }
    for (const auto& clip : clips) {
        const auto info =
            nlohmann::json::parse(shop.run("corvid info --json " + clip.string()).out);
        const auto json = nlohmann::json::parse(
            shop.run("corvid get --json " + clip.string() +
                     " @title @width @height @codec @bits @scan @sound-bits @warnings")
                .out);
        const auto valuesOf = [&json](std::size_t query) {
            std::vector<std::string> values;
            for (const auto& value : json["answers"][query]["values"]) {
                values.push_back(value["value"]);
            }
            return values;
        };
        const auto expected = [&info](const char* kind, const char* key) {
            std::vector<std::string> values;
            for (const auto& stream : info["essence"]) {
                if (stream["kind"] != kind || stream.value(key, nlohmann::json()).is_null()) {
                    continue;
                }
                const auto& value = stream[key];
                const std::string text =
                    value.is_string() ? value.get<std::string>() : value.dump();
                if (std::find(values.begin(), values.end(), text) == values.end()) {
                    values.push_back(text);
                }
            }
            return values;
        };
        const auto& title = info["title"];
        EXPECT_EQ(valuesOf(0),
                  title.is_null() ? std::vector<std::string>() : std::vector<std::string>{title})
            << clip;
        const char* ofPictures[] = {"width", "height", "codec", "bits", "scan"};
        for (std::size_t i = 0; i != std::size(ofPictures); ++i) {
            EXPECT_EQ(valuesOf(1 + i), expected("picture", ofPictures[i]))
                << clip << " " << ofPictures[i];
        }
        EXPECT_EQ(valuesOf(6), expected("sound", "bits")) << clip;
        EXPECT_EQ(valuesOf(7), std::vector<std::string>{std::to_string(info["warnings"].size())})
            << clip;
    }
}

} // namespace
