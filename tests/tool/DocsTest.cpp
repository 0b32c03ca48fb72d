#include "tests/tool/RunCommand.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>

using namespace Corvid::Testing;

namespace {

/// An example: what people type after "$ ", and what they then see.
struct Example {
    std::string command;
    std::string output;
};

/// The examples of a page: blocks of "```console".
std::vector<Example> examplesOf(const std::filesystem::path& page) {
    std::ifstream file(page);
    std::vector<Example> examples;
    bool isInside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("```", 0) == 0) {
            isInside = line == "```console";
        } else if (isInside && line.rfind("$ ", 0) == 0) {
            examples.push_back({line.substr(2), ""});
        } else if (isInside && !examples.empty()) {
            examples.back().output += line + "\n";
        }
    }
    return examples;
}

/// True for the text, where a line "..." of the pattern stands for any number of lines.
bool matches(const std::string& pattern, const std::string& text) {
    const auto gap = pattern.find("...\n");
    if (gap == std::string::npos) {
        return pattern == text;
    }
    const std::string front = pattern.substr(0, gap);
    const std::string back = pattern.substr(gap + 4);
    return text.size() >= front.size() + back.size() && text.compare(0, front.size(), front) == 0 &&
           text.compare(text.size() - back.size(), back.size(), back) == 0;
}

class Docs : public ::testing::TestWithParam<const char*> {};

TEST_P(Docs, examplesPrintWhatThePageShows) {
    const auto examples = examplesOf(sourceDir() / "docs" / (GetParam() + std::string(".md")));
    ASSERT_FALSE(examples.empty());
    const Workshop shop;
    std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf", shop.path() / "sample.mxf");
    for (const Example& example : examples) {
        if (example.command.find("jq ") != std::string::npos &&
            shop.run("command -v jq").status != 0) {
            GTEST_SKIP() << "no jq";
        }
        Outcome outcome = shop.run(example.command);
        // Of the line breaks of CSV a page shows the second half.
        outcome.out.erase(std::remove(outcome.out.begin(), outcome.out.end(), '\r'),
                          outcome.out.end());
        EXPECT_EQ(outcome.status, 0) << example.command << "\n" << outcome.err;
        EXPECT_TRUE(matches(example.output, outcome.out))
            << "$ " << example.command << "\nthe page shows\n"
            << example.output << "but it prints\n"
            << outcome.out;
    }
}

INSTANTIATE_TEST_SUITE_P(, Docs,
                         ::testing::Values("to-xml", "to-json", "from-xml", "info", "check",
                                           "schema", "dictionary-command", "apply", "recover",
                                           "get", "set", "diff", "report", "edit", "many-files"),
                         [](const auto& each) {
                             std::string name = each.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

} // namespace
