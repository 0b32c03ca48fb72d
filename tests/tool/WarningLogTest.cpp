#include "tools/corvid/terminal/WarningLog.h"

#include "tools/corvid/CommandWarnings.h"

#include <gtest/gtest.h>

using namespace Corvid;
using namespace Corvid::Tool;

namespace {

mxf::Warning warning(const mxf::WarningKind& kind, const std::string& set = {},
                     std::optional<Types::u16> tag = {}) {
    mxf::Warning result(kind, "x");
    result.set = set;
    result.localTag = tag;
    return result;
}

struct Case {
    const char* name;
    const mxf::WarningKind* kind;
    std::size_t facts;
};

class WarningScopes : public ::testing::TestWithParam<Case> {};

TEST_P(WarningScopes, sayWhichRepeatsAreOneFact) {
    WarningLog log;
    for (const unsigned tag : {1U, 2U}) {
        for (const char* set : {"A", "B"}) {
            log.add(warning(*GetParam().kind, set, static_cast<Types::u16>(tag)));
            log.add(warning(*GetParam().kind, set, static_cast<Types::u16>(tag)));
        }
    }
    EXPECT_EQ(log.entries().size(), GetParam().facts);
    std::size_t count = 0;
    for (const auto& entry : log.entries()) {
        count += entry.count;
    }
    EXPECT_EQ(count, 8U);
    EXPECT_EQ(log.entries().front().first.set, "A");
    EXPECT_EQ(log.entries().front().first.localTag, Types::u16{1});
}

INSTANTIATE_TEST_SUITE_P(, WarningScopes,
                         ::testing::Values(Case{"File", &mxf::WarningKinds::headerByteCount, 1},
                                           Case{"Set", &mxf::WarningKinds::noInstanceUID, 2},
                                           Case{"Property", &mxf::WarningKinds::unfitValue, 2},
                                           Case{"Each", &CommandWarnings::replacedCharacter, 8}),
                         [](const auto& each) { return each.param.name; });

TEST(WarningLog, staysSmallWhateverIsWrongWithAFile) {
    WarningLog log;
    for (const auto* kind : {&mxf::WarningKinds::unfitValue, &CommandWarnings::replacedCharacter}) {
        for (unsigned tag = 0; tag != 1000; ++tag) {
            log.add(warning(*kind, "A", static_cast<Types::u16>(tag)));
        }
    }
    const auto& entries = log.entries();
    ASSERT_EQ(entries.size(), 2 * WarningLog::mostOfAKind);
    EXPECT_EQ(entries[0].count, 1U);
    EXPECT_EQ(entries[WarningLog::mostOfAKind - 1].count, 1001 - WarningLog::mostOfAKind);
    EXPECT_EQ(entries.back().count, 1001 - WarningLog::mostOfAKind);
}

TEST(WarningLog, shortensWhatAFileMadeLong) {
    const std::string text(100000, 'x');
    WarningLog log;
    mxf::Warning odd(mxf::WarningKinds::unfitValue, text);
    odd.set = text;
    odd.property = text;
    log.add(odd);
    log.add(odd);
    ASSERT_EQ(log.entries().size(), 1U);
    const auto& [first, count] = log.entries().front();
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(first.text, text.substr(0, WarningLog::longestText) + "...");
    EXPECT_EQ(first.set, text.substr(0, WarningLog::longestName) + "...");
    EXPECT_EQ(first.property, first.set);
}

} // namespace
