#include "tests/support/Paths.h"
#include "tools/corvid/CommandWarnings.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace Corvid;

namespace {

/// All kinds, by the rows of the tables.
const std::vector<mxf::WarningKind>& kinds() {
    static const std::vector<mxf::WarningKind> all{
#define CORVID_WARNING(name, code, scope, summary)                                                 \
    mxf::WarningKind{code, mxf::WarningScope::scope, summary},
#include "host/mxf/WarningKinds.def"
#define CORVID_WARNING(name, code, scope, summary)                                                 \
    mxf::WarningKind{code, mxf::WarningScope::scope, summary},
#include "tools/corvid/CommandWarnings.def"
    };
    return all;
}

/// The first paragraph below each heading of the page that names a code.
std::map<std::string, std::string> explained() {
    std::ifstream file(Testing::sourceDir() / "docs" / "warnings.md");
    std::map<std::string, std::string> paragraphs;
    std::string code;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("### ", 0) == 0) {
            code = line.substr(4);
            EXPECT_TRUE(paragraphs.emplace(code, "").second) << code << " is explained twice";
        } else if (!code.empty()) {
            paragraphs[code] += line + " ";
        }
    }
    return paragraphs;
}

TEST(WarningsPage, explainsEveryKindAndNoOther) {
    std::set<std::string> codes;
    std::set<std::string> headings;
    for (const auto& kind : kinds()) {
        EXPECT_TRUE(codes.insert(kind.code).second) << kind.code << " is the code of two kinds";
        EXPECT_EQ(std::string(kind.code).find_first_not_of("abcdefghijklmnopqrstuvwxyz-"),
                  std::string::npos)
            << kind.code;
    }
    for (const auto& [heading, text] : explained()) {
        headings.insert(heading);
        for (const char* part : {"Harmless?", "What to do:"}) {
            EXPECT_NE(text.find(part), std::string::npos) << heading << " lacks " << part;
        }
    }
    EXPECT_EQ(codes, headings);
}

TEST(WarningsPage, beginsEachExplanationWithTheSummary) {
    const auto page = explained();
    for (const auto& kind : kinds()) {
        const auto found = page.find(kind.code);
        ASSERT_NE(found, page.end()) << kind.code;
        EXPECT_EQ(found->second.find(kind.summary), 1U) << kind.code << ": " << kind.summary;
    }
}

} // namespace
