#include "tests/tool/RunCommand.h"

#include <gtest/gtest.h>

using namespace Corvid::Testing;

namespace {

struct Case {
    const char* name;
    const char* line;
    bool reads;  ///< standard input
    bool prints; ///< to standard output
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class StandardDescriptors : public ::testing::TestWithParam<Case> {};

TEST_P(StandardDescriptors, canBeClosedInAnyCombination) {
    const Workshop shop;
    shop.write("odd.mxf", clipWithANamelessSet());
    shop.run("corvid to-xml odd.mxf -o odd.xml");
    const std::string line = "rm -rf out; " + std::string(GetParam().line);
    ASSERT_EQ(shop.run(line).status, 0);
    const std::string written = shop.run("cat out/* out").out;
    for (unsigned closed = 1; closed != 8; ++closed) {
        const bool input = (closed & 1) != 0;
        const bool output = (closed & 2) != 0;
        const bool error = (closed & 4) != 0;
        const Outcome outcome = shop.run(line + (input ? " <&-" : "") + (output ? " >&-" : "") +
                                         (error ? " 2>&-" : ""));
        const bool fails = (input && GetParam().reads) || (output && GetParam().prints);
        EXPECT_EQ(outcome.status, fails ? 3 : 0) << closed << outcome.err;
        if (fails) {
            EXPECT_EQ(shop.run("ls out").out, "") << closed;
        } else {
            EXPECT_EQ(shop.run("cat out/* out").out, written) << closed;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    , StandardDescriptors,
    ::testing::Values(Case{"ToXml", "corvid to-xml - -o out <odd.mxf", true, false},
                      Case{"ToXmlPrints", "corvid to-xml odd.mxf", false, true},
                      Case{"FromXml", "corvid from-xml odd.xml -o out", false, false},
                      Case{"FromXmlPipes", "corvid from-xml - -o - <odd.xml", true, true},
                      Case{"Info", "corvid info odd.mxf", false, true},
                      Case{"InfoOfStandardInput", "corvid info - --json <odd.mxf", true, true},
                      Case{"Check", "corvid check - <odd.mxf", true, true},
                      Case{"Schema", "corvid schema -o out", false, false},
                      Case{"Dictionary", "corvid dictionary Preface", false, true},
                      Case{"Help", "corvid help", false, true}),
    [](const auto& each) { return std::string(each.param.name); });

} // namespace
