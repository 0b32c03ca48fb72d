#include "tests/mxf/rewrite/HeaderEdits.h"

namespace Corvid::mxf {
namespace {

using namespace HeaderEdits;

struct Case {
    const char* name;
    TestBytes before;
    HeaderEdit (*edit)(const LayoutOf& of);
    TestBytes after;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class EditsHeader : public ::testing::TestWithParam<Case> {};

TEST_P(EditsHeader, inPlace) {
    const LayoutOf of(fileOf(GetParam().before));
    ASSERT_EQ(GetParam().before.size(), GetParam().after.size());
    const TestBytes bytes = edited(of, GetParam().edit(of));
    EXPECT_EQ(bytes, fileOf(GetParam().after));
    // What was written is a layout again, and an edit of nothing keeps it.
    const LayoutOf again(bytes);
    EXPECT_EQ(edited(again, {}), bytes);
}

INSTANTIATE_TEST_SUITE_P(, EditsHeader,
                         ::testing::Values(
                             Case{"AValueOfTheSameSize", join({primer, preface(), track(oldName)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(1), 0x3B05, TestBytes{1, 4}));
                                  },
                                  join({primer, preface({1, 4}), track(oldName)})},
                             Case{"ALongerValue",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, preface(), track(newName), fill(60)})},
                             Case{"AShorterValue",
                                  join({primer, preface(), track(newName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, oldName));
                                  },
                                  join({primer, preface(), track(oldName), fill(100)})},
                             Case{"APropertyByItsLabel",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      SetChange change = changed(of.set(2), 0, newName);
                                      TestBytes label = labelOfTag(0x4802);
                                      label[7] = 1;
                                      change.properties[0].property.name = labelOf(label);
                                      return oneSet(change);
                                  },
                                  join({primer, preface(), track(newName), fill(60)})},
                             Case{
                                 "TheSecondOfTwoEqualProperties",
                                 join({primer, preface(), track(oldName, property(0x4802, {1})),
                                       fill(80)}),
                                 [](const LayoutOf& of) {
                                     SetChange change = changed(of.set(2), 0x4802, TestBytes{5, 6});
                                     change.properties[0].property.occurrence = 1;
                                     return oneSet(change);
                                 },
                                 join({primer, preface(), track(oldName, property(0x4802, {5, 6})),
                                       fill(79)})},
                             Case{"APropertyThatGoes",
                                  join({primer, preface(),
                                        track(oldName, property(0x4801, number(1, 4))), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, {}));
                                  },
                                  join({primer, preface(),
                                        Testing::set(structuralKey(Testing::timelineTrackSet), 2,
                                                     {property(0x4801, number(1, 4))}),
                                        fill(90)})},
                             Case{"ANewPropertyWithTheTagOfThePrimerPack",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(added(of.set(2), labelOfTag(0x4801),
                                                          number(1, 4), 0x1234));
                                  },
                                  join({primer, preface(),
                                        track(oldName, property(0x4801, number(1, 4))), fill(72)})},
                             Case{"ANewPropertyWithAStaticTag",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(added(of.set(2), newLabel(1), {9}, 0x4803));
                                  },
                                  join({primerWith(0x4803, newLabel(1)), preface(),
                                        track(oldName, property(0x4803, {9})), fill(57)})},
                             Case{"ANewPropertyWithADynamicTag",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(added(of.set(2), newLabel(1), {9}));
                                  },
                                  join({primerWith(0xFFFF, newLabel(1)), preface(),
                                        track(oldName, property(0xFFFF, {9})), fill(57)})},
                             Case{"ANewPropertyWhoseStaticTagAnotherLabelHas",
                                  join({primer, preface(), track(oldName, property(0xFFFF, {1})),
                                        fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(added(of.set(2), newLabel(1), {9}, 0x4802));
                                  },
                                  join({primerWith(0xFFFE, newLabel(1)), preface(),
                                        track(oldName, join({property(0xFFFF, {1}),
                                                             property(0xFFFE, {9})})),
                                        fill(57)})},
                             Case{"OneLabelInTwoSetsWithOneEntry",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit = oneSet(added(of.set(2), newLabel(1), {9}));
                                      TestBytes otherVersion = newLabel(1);
                                      otherVersion[7] = 5;
                                      edit.changedSets.push_back(
                                          added(of.set(1), otherVersion, {8}));
                                      return edit;
                                  },
                                  join({primerWith(0xFFFF,
                                                   [] {
                                                       TestBytes label = newLabel(1);
                                                       label[7] = 5;
                                                       return label;
                                                   }()),
                                        preface({1, 3}, property(0xFFFF, {8})),
                                        track(oldName, property(0xFFFF, {9})), fill(52)})},
                             Case{"ASetThatGoes",
                                  join({primer, preface(), identification, track(oldName),
                                        fill(80)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit;
                                      edit.removed.push_back(of.set(3));
                                      return edit;
                                  },
                                  join({primer, preface(), track(oldName), fill(120)})},
                             Case{"NewSetsAfterAnother",
                                  join({primer, preface(), track(oldName), fill(130)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit;
                                      edit.newSets.push_back(newSet(of.set(1), 3));
                                      edit.newSets.push_back(newSet(of.set(1), 4));
                                      return edit;
                                  },
                                  join({primer, preface(), identification,
                                        Testing::set(structuralKey(Testing::identificationSet), 4),
                                        track(oldName), fill(50)})},
                             Case{"ANewSetAtTheEnd",
                                  join({primer, preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit;
                                      edit.newSets.push_back(newSet(of.set(2), 3));
                                      return edit;
                                  },
                                  join({primer, preface(), track(oldName), identification,
                                        fill(40)})},
                             Case{"ANewSetInThePlaceOfAnother",
                                  join({primer, preface(), track({}), fill(10)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit;
                                      edit.removed.push_back(of.set(2));
                                      edit.newSets.push_back(newSet(of.set(2), 3));
                                      return edit;
                                  },
                                  join({primer, preface(), identification, fill(14)})},
                             Case{"ADarkKlv", join({primer, preface(), darkKlv, fill(80)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit;
                                      edit.changedDark.push_back(
                                          {of.layout.items().size() - 2, Bytes{7, 8, 9, 10}});
                                      return edit;
                                  },
                                  join({primer, preface(), klv(uuid(7), {7, 8, 9, 10}, 9),
                                        fill(79)})},
                             Case{"TheFillThatFollowsTakesTheChange",
                                  join({primer, track(oldName), fill(80), darkKlv, preface(),
                                        fill(10)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, track(newName), fill(60), darkKlv, preface(),
                                        fill(10)})},
                             Case{"AFillBeforeTakesTheChange",
                                  join({primer, fill(80), track(oldName), darkKlv, preface()}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, fill(60), track(newName), darkKlv, preface()})},
                             Case{"AFillThatIsUsedUp",
                                  join({primer, preface(), track(oldName), fill(0)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, preface(), track(newName)})},
                             Case{"AFillOfTheLeastSize",
                                  join({primer, preface(), track(oldName), fill(17)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, preface(), track(newName), fill(0, 2, 1)})},
                             Case{"AnotherFillClosesAGap",
                                  join({primer, fill(8, 1), preface(), track(oldName), fill(5)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, fill(13, 1), preface(), track(newName)})},
                             Case{"ALongerFormOfALengthClosesAGap",
                                  join({primer, preface(), track(oldName), fill(1)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(changed(of.set(2), 0x4802, newName));
                                  },
                                  join({primer, preface(), track(newName, {}, 5)})},
                             Case{"LongerFormsOfSeveralLengthsCloseAGap",
                                  join({primer,
                                        preface(number(0x103, 2), property(0x4801, {1, 2, 3})),
                                        track(oldName)}),
                                  [](const LayoutOf& of) {
                                      HeaderEdit edit = oneSet(changed(of.set(1), 0x4801, {}));
                                      edit.changedSets.push_back(
                                          changed(of.set(2), 0x4802, oldName));
                                      return edit;
                                  },
                                  join({primer, preface(number(0x103, 2), {}, 9),
                                        track(oldName, {}, 6)})},
                             Case{"SetsWithBerLengths",
                                  join({primer,
                                        Testing::withBerLengths(join({preface(), track(oldName)})),
                                        fill(300)}),
                                  [](const LayoutOf& of) {
                                      SetChange change =
                                          changed(of.set(2), 0x4802, Testing::repeat(0, 200));
                                      change.added.push_back(
                                          {labelOf(labelOfTag(0x4801)), Bytes{1}, 0});
                                      return oneSet(change);
                                  },
                                  join({primer,
                                        Testing::withBerLengths(
                                            join({preface(), track(Testing::repeat(0, 200),
                                                                   property(0x4801, {1}))})),
                                        fill(101)})},
                             Case{"AShortLengthThatNoLongerFits",
                                  join({primer, preface(), track(oldName, {}, 1), fill(300)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(
                                          changed(of.set(2), 0x4802, Testing::repeat(0, 200)));
                                  },
                                  join({primer, preface(), track(Testing::repeat(0, 200), {}, 2),
                                        fill(105)})},
                             Case{"ASetOfAnEmptyPrimerPack",
                                  join({Testing::primer({}, 0, 0), preface(), track(oldName),
                                        fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(added(of.set(2), newLabel(1), {9}));
                                  },
                                  join({Testing::primer({{0xFFFF, newLabel(1)}}), preface(),
                                        track(oldName, property(0xFFFF, {9})), fill(57)})},
                             Case{"ASetWithoutAPrimerPack",
                                  join({preface(), track(oldName), fill(80)}),
                                  [](const LayoutOf& of) {
                                      return oneSet(added(of.set(2), newLabel(1), {9}, 0x4803));
                                  },
                                  join({preface(), track(oldName, property(0x4803, {9})),
                                        fill(75)})}),
                         Testing::nameOfCase<Case>);

struct Missing {
    const char* name;
    std::size_t fillSize; ///< the bytes of the whole fill item after the sets, 0 for none
    std::size_t longer;   ///< how much longer a value gets
    std::uint64_t missing;
};
void PrintTo(const Missing& c, std::ostream* out) { *out << c.name; }

class NeedsRoom : public ::testing::TestWithParam<Missing> {};

TEST_P(NeedsRoom, inBytes) {
    const auto& c = GetParam();
    const TestBytes room = c.fillSize == 0 ? TestBytes() : fill(c.fillSize - 17, 2, 1);
    // A length of nine octets can't be longer.
    const LayoutOf of(fileOf(join({primer, preface(), track(oldName, {}, 9), room})));
    const HeaderEdit edit = oneSet(changed(of.set(2), 0x4802, Testing::repeat(1, 6 + c.longer)));
    EXPECT_EQ(missing(of, edit), c.missing);
    if (c.missing == 0) {
        return;
    }
    EditedHeader grown(of.layout, edit);
    EXPECT_EQ(grown.fit(c.missing), 0U);
    const Segments segments = grown.segments();
    EXPECT_LE(segments.back().end(), of.layout.end() + c.missing);
}

INSTANTIATE_TEST_SUITE_P(, NeedsRoom,
                         ::testing::Values(Missing{"NoneWhereItFitsExactly", 40, 40, 0},
                                           Missing{"NoneWhereALeastFillIsLeft", 40, 23, 0},
                                           Missing{"OneWhereSixteenAreLeft", 40, 24, 1},
                                           Missing{"SixteenWhereOneIsLeft", 40, 39, 16},
                                           Missing{"OneWhereItIsTooLong", 40, 41, 1},
                                           Missing{"AllWhereThereIsNoFill", 0, 1000, 1000}),
                         Testing::nameOfCase<Missing>);

TEST(EditedHeader, writesOnlyTheBytesThatChange) {
    const LayoutOf of(fileOf(join({primer, preface(), track(oldName), fill(500)})));
    ByteRanges ranges;
    edited(of, {}, &ranges);
    EXPECT_TRUE(ranges.empty());
    edited(of, oneSet(changed(of.set(1), 0x3B05, TestBytes{1, 3})), &ranges);
    EXPECT_TRUE(ranges.empty());
    edited(of, oneSet(changed(of.set(1), 0x3B05, TestBytes{1, 4})), &ranges);
    ASSERT_EQ(ranges.size(), 1U);
    EXPECT_EQ(ranges[0].bytes, Bytes{4});
    // Length, name and the fill's head are near each other; the rest of the fill is not written.
    edited(of, oneSet(changed(of.set(2), 0x4802, newName)), &ranges);
    EXPECT_LT(ranges.back().end(), of.layout.end() - 450);
}

TEST(EditedHeader, leavesNothingOfTheOldSetsInFill) {
    const TestBytes secret = Testing::repeat('x', 100);
    const LayoutOf of(fileOf(join({primer, preface(), track(secret), fill(500)})));
    const TestBytes bytes = edited(of, oneSet(changed(of.set(2), 0x4802, TestBytes{})));
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 'x'), 0);
}

} // namespace
} // namespace Corvid::mxf
