#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

struct EmptyName {
    const char* name;
    const char* line;
};

class EmptyNames : public ::testing::TestWithParam<EmptyName> {};

/// As a script gives whose variable is not set. `set -o ''` must not change the clip itself.
TEST_P(EmptyNames, areRefusedAndChangeNothing) {
    const Workshop shop;
    shop.write("clip.mxf", smallClip());
    ASSERT_EQ(shop.run("corvid to-xml clip.mxf -o clip.xml").status, 0);
    const std::string before = shop.read("clip.mxf");
    const std::size_t files = shop.count();
    const Outcome outcome = shop.run(GetParam().line);
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::HasSubstr("expected a name, not ''"));
    EXPECT_EQ(shop.count(), files);
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

INSTANTIATE_TEST_SUITE_P(
    , EmptyNames,
    ::testing::Values(
        EmptyName{"NewClip", "corvid set clip.mxf Preface/ObjectModelVersion=2 -o ''"},
        EmptyName{"NewClipOfADocument", "corvid apply clip.xml clip.mxf -o ''"},
        EmptyName{"Undo", "corvid set clip.mxf Preface/ObjectModelVersion=2 --undo ''"},
        EmptyName{"Record", "corvid set clip.mxf Preface/ObjectModelVersion=2 --log ''"},
        EmptyName{"From", "corvid recover clip.mxf --from ''"},
        EmptyName{"Document", "corvid to-xml clip.mxf -o ''"},
        EmptyName{"Json", "corvid to-json clip.mxf -o ''"},
        EmptyName{"Page", "corvid report clip.mxf -o ''"},
        EmptyName{"File", "corvid from-xml clip.xml -o ''"},
        EmptyName{"Schemas", "corvid schema -o ''"}),
    [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace Corvid::Testing
