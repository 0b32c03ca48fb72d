#include "tests/mxf/rewrite/HeaderEdits.h"

namespace Corvid::mxf {
namespace {

using namespace HeaderEdits;

struct Refused {
    const char* name;
    TestBytes before;
    HeaderEdit (*edit)(const LayoutOf& of);
    const char* message;
};
void PrintTo(const Refused& c, std::ostream* out) { *out << c.name; }

class RefusesEdit : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusesEdit, withAMessage) {
    const LayoutOf of(fileOf(GetParam().before));
    const HeaderEdit edit = GetParam().edit(of);
    EXPECT_EQ(Testing::messageOf([&] { EditedHeader(of.layout, edit); }), GetParam().message);
}

const TestBytes sound = join({primer, preface(), track(oldName), darkKlv, fill(80)});

INSTANTIATE_TEST_SUITE_P(
    , RefusesEdit,
    ::testing::Values(
        Refused{"AnItemThatIsNotThere", sound,
                [](const LayoutOf&) { return oneSet(changed(9, 0x4802, {})); },
                "the edit names item 9, the last is 4"},
        Refused{"AChangeOfTheDirectItemTwice", sound,
                [](const LayoutOf& of) {
                    HeaderEdit edit = oneSet(changed(of.set(2), 0x4802, {}));
                    edit.removed.push_back(of.set(2));
                    return edit;
                },
                "the edit names item 2 twice"},
        Refused{"ASetChangeOfADarkKlv", sound,
                [](const LayoutOf&) { return oneSet(changed(3, 0x4802, {})); },
                "the edit names item 3, which is no set"},
        Refused{"ADarkChangeOfASet", sound,
                [](const LayoutOf&) {
                    HeaderEdit edit;
                    edit.changedDark.push_back({1, {}});
                    return edit;
                },
                "the edit names item 1, which is no dark KLV"},
        Refused{"RemovalOfThePrimerPack", sound,
                [](const LayoutOf&) {
                    HeaderEdit edit;
                    edit.removed.push_back(0);
                    return edit;
                },
                "the edit names item 0, which is no set"},
        Refused{"APropertyThatIsNotThere", sound,
                [](const LayoutOf& of) { return oneSet(changed(of.set(2), 0x4801, {})); },
                "the set has no property 48.01"},
        Refused{"ASecondOneThatIsNotThere", sound,
                [](const LayoutOf& of) {
                    SetChange change = changed(of.set(2), 0x4802, {});
                    change.properties[0].property.occurrence = 1;
                    return oneSet(change);
                },
                "the set has no property 48.02 number 2"},
        Refused{"APropertyTwice", sound,
                [](const LayoutOf& of) {
                    SetChange change = changed(of.set(2), 0x4802, {});
                    change.properties.push_back({{labelOf(labelOfTag(0x4802)), 0}, {}});
                    return oneSet(change);
                },
                "a property of the set changes twice"},
        Refused{"AValueThatIsTooLong", sound,
                [](const LayoutOf& of) {
                    return oneSet(changed(of.set(2), 0x4802, Testing::repeat(1, 65536)));
                },
                "property 48.02: the value has 65536 bytes, expected at most 65535"},
        Refused{"ANewSetThatIsNone", sound,
                [](const LayoutOf& of) {
                    HeaderEdit edit;
                    edit.newSets.push_back(newSet(of.set(1), 3));
                    edit.newSets.back().key = keyOf(Testing::indexSegmentKey());
                    return edit;
                },
                "the edit inserts a set with the key "
                "06.0e.2b.34.02.53.01.01.0d.01.02.01.01.10.01.00, which is not that of a local "
                "set"},
        Refused{"ANewEntryOfAPrimerPackThatLies",
                join({Testing::primer(Testing::standardLabels(), 3), preface()}),
                [](const LayoutOf& of) { return oneSet(added(of.set(1), newLabel(1), {9})); },
                "byte 108: the primer pack contradicts itself, so it can't get an entry for the "
                "property 06.0e.2b.34.01.01.01.01.0e.7f.00.00.00.00.00.01"},
        Refused{"ADynamicTagWithoutAPrimerPack", preface(),
                [](const LayoutOf& of) { return oneSet(added(of.set(1), newLabel(1), {9})); },
                "there is no primer pack that could give a tag to the property "
                "06.0e.2b.34.01.01.01.01.0e.7f.00.00.00.00.00.01"}),
    Testing::nameOfCase<Refused>);

TEST(EditedHeader, refusesTheDynamicTagAfterTheLast) {
    auto entries = Testing::standardLabels();
    for (unsigned tag = 0x8000; tag != 0xFFFF; ++tag) {
        entries.emplace_back(tag, uuid(tag));
    }
    const LayoutOf of(fileOf(join({Testing::primer(entries), preface(), fill(100)})));
    EXPECT_FALSE(edited(of, oneSet(added(of.set(1), newLabel(1), {9}))).empty());
    HeaderEdit two = oneSet(added(of.set(1), newLabel(1), {9}));
    two.changedSets[0].added.push_back({labelOf(newLabel(2)), {}, 0});
    EXPECT_EQ(Testing::messageOf([&] { EditedHeader(of.layout, two); }),
              "all 32768 dynamic local tags of the partition are in use, so a property gets none");
}

} // namespace
} // namespace Corvid::mxf
