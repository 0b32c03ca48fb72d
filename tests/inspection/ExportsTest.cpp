#include "tests/support/ExportedNames.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <set>

namespace Corvid::Testing {
namespace {

TEST(Exports, areTheInterfaceAndNothingElse) {
    const std::string library = "Corvid::Inspection::";
    std::set<std::string> names;
    for (const std::string& name : exportedNames(CORVID_TEST_INSPECTION_LIBRARY)) {
        EXPECT_EQ(name.rfind(library, 0), 0U) << name;
        const std::string rest = name.substr(std::min(library.size(), name.size()));
        names.insert(rest.substr(0, rest.find("::")));
    }
    const std::set<std::string> expected{
        "Glossary", "Picture",   "Structural", "branchesOf",  "converted",      "frameRate",
        "isRate",   "labelName", "labelOf",    "nameOf",      "registeredName", "schemeLines",
        "seconds",  "shortName", "summarise",  "timecodeText"};
    EXPECT_THAT(names, testing::ContainerEq(expected));
}

} // namespace
} // namespace Corvid::Testing
