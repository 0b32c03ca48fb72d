#include "tests/tool/RunCommand.h"

#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <sstream>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// The block after a heading of docs/dictionary.md that is fenced with that word, and the next
/// ones.
std::vector<std::string> blocksBehind(const std::string& heading, const std::string& fence) {
    std::ifstream file(sourceDir() / "docs" / "dictionary.md");
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const std::string open = "```" + fence + "\n";
    std::vector<std::string> blocks;
    for (std::size_t at = page.find(open, page.find(heading)); at != std::string::npos;
         at = page.find(open, at)) {
        const std::size_t begin = at + open.size();
        at = page.find("```", begin);
        blocks.push_back(page.substr(begin, at - begin));
    }
    return blocks;
}

TEST(DictionaryExample, namesTheSetsOfARealFile) {
    const auto clip = samplesDir() / "fraunhofer-iis__67-204-audio-track-file-compliant.mxf";
    if (samplesDir().empty() || !std::filesystem::exists(clip)) {
        GTEST_SKIP() << "no folder of sample files";
    }
    const std::string heading = "## A set of a real file";
    const auto dictionaries = blocksBehind(heading, "dictionary");
    const auto documents = blocksBehind(heading, "xml");
    ASSERT_FALSE(dictionaries.empty());
    ASSERT_GE(documents.size(), 2U);
    const Workshop shop;
    shop.write("adm.dict", dictionaries.front());
    std::filesystem::copy_file(clip, shop.path() / "clip.mxf");

    const std::string key = documents[0].substr(0, documents[0].find('>'));
    const std::string registered = " --no-vendor-dictionaries ";
    const std::string options = registered + "--dictionary adm.dict ";
    EXPECT_THAT(shop.run("corvid to-xml clip.mxf" + registered).out, HasSubstr(key));
    const Outcome named = shop.run("corvid to-xml --validate clip.mxf -o clip.xml" + options);
    EXPECT_EQ(named.status, 0) << named.err;
    const std::string document = shop.read("clip.xml");
    EXPECT_THAT(document, Not(HasSubstr(key)));
    // Line by line: the page leaves out some, and the indentation of the root.
    std::istringstream lines(documents[1]);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t text = line.find_first_not_of(' ');
        if (line.substr(text) != "...") {
            EXPECT_THAT(document, HasSubstr("\n  " + line + "\n"));
        }
    }

    EXPECT_EQ(shop.run("corvid from-xml clip.xml -o back.mxf" + options).status, 0);
    EXPECT_EQ(shop.run("corvid to-xml back.mxf" + options).out, document);
}

} // namespace
