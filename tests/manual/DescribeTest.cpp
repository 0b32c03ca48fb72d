#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

using namespace Corvid::Testing;

namespace {

nlohmann::json description() {
    const Outcome outcome = Workshop().run("corvid --describe");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return nlohmann::json::parse(outcome.out);
}

/// The names of options that a help text has at the start of its lines.
std::set<std::string> optionsInHelp(const std::string& verb) {
    const std::string help = Workshop().run("corvid help " + verb).out;
    static const std::regex name("(?:^  |, )(--?[A-Za-z0-9][A-Za-z0-9-]*)");
    std::set<std::string> names;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("  -", 0) == 0) {
            for (std::sregex_iterator i(line.begin(), line.end(), name), end; i != end; ++i) {
                names.insert((*i)[1]);
            }
        }
    }
    return names;
}

/// The one of a list whose key has that value, or a list with it.
const nlohmann::json& find(const nlohmann::json& list, const char* key, const std::string& value) {
    for (const auto& each : list) {
        const auto found = each.value(key, nlohmann::json());
        if (found == value || std::count(found.begin(), found.end(), value) != 0) {
            return each;
        }
    }
    throw std::runtime_error("nothing has the " + std::string(key) + " " + value);
}

TEST(Describe, hasTheOptionsThatTheHelpHas) {
    const auto command = description();
    EXPECT_GT(command["verbs"].size(), 10U);
    for (const auto& verb : command["verbs"]) {
        std::set<std::string> names;
        for (const auto& option : verb["options"]) {
            names.insert(option["names"].begin(), option["names"].end());
        }
        if (verb["name"] != "help") {
            EXPECT_EQ(names, optionsInHelp(verb["name"])) << verb["name"];
        }
    }
}

TEST(Describe, namesArgumentsAsPeopleDo) {
    const auto command = description();
    for (const auto& verb : command["verbs"]) {
        for (const auto& option : verb["options"]) {
            EXPECT_EQ(option.value("argument", "").find(':'), std::string::npos) << option;
        }
    }
}

TEST(Describe, isNotInTheHelp) {
    EXPECT_THAT(Workshop().run("corvid help").out, testing::Not(testing::HasSubstr("--describe")));
}

TEST(Describe, saysWhatEachStatusMeans) {
    const auto command = description();
    EXPECT_EQ(command["exitStatuses"].size(), 4U);
    EXPECT_EQ(find(command["exitStatuses"], "meaning", "wrong command line")["status"], 2);
}

std::string textOf(const char* page) {
    std::ifstream file(sourceDir() / page);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Describe, namesVerbsThatTheFirstPagesHave) {
    const std::string readme = textOf("README.md");
    const std::string index = textOf("docs/index.md");
    const auto command = description();
    for (const auto& verb : command["verbs"]) {
        const std::string name = verb["name"];
        EXPECT_NE(readme.find("    corvid " + name + " "), std::string::npos) << name;
        EXPECT_TRUE(index.find("(" + name + ".md)") != std::string::npos ||
                    index.find("`corvid " + name) != std::string::npos)
            << name;
    }
}

struct Case {
    const char* name;
    const char* verb;
    const char* key;
    const char* option;
    const char* values;
};

class DescribesWhatAnOptionTakes : public testing::TestWithParam<Case> {};

TEST_P(DescribesWhatAnOptionTakes, byTheNameOfItsArgument) {
    const auto command = description();
    const auto& verb = find(command["verbs"], "name", GetParam().verb);
    const auto& option = find(verb["options"], GetParam().key, GetParam().option);
    EXPECT_EQ(option["values"], nlohmann::json::parse(GetParam().values));
}

INSTANTIATE_TEST_SUITE_P(
    , DescribesWhatAnOptionTakes,
    testing::Values(
        Case{"Choices", "to-xml", "names", "--references", R"({"choices": ["links", "values"]})"},
        Case{"ChoicesAndANumber", "to-xml", "names", "--partition",
             R"({"choices": ["auto", "header", "footer"]})"},
        Case{"AFile", "to-xml", "names", "-o", R"({"files": [""]})"},
        Case{"AFolder", "schema", "names", "-o", R"({"folders": true})"},
        Case{"AFolderThatIsThere", "apply", "names", "--recovery-dir", R"({"folders": true})"},
        Case{"AClip", "to-xml", "argument", "CLIP.mxf", R"({"files": ["mxf"]})"},
        Case{"ADocument", "from-xml", "argument", "DOC.xml", R"({"files": ["xml"]})"},
        Case{"AnyFile", "diff", "argument", "AFTER", R"({"files": [""]})"},
        Case{"AVerb", "help", "argument", "VERB", R"({"verbs": true})"},
        Case{"Anything", "from-xml", "names", "--kag", "{}"}),
    [](const auto& each) { return each.param.name; });

} // namespace
