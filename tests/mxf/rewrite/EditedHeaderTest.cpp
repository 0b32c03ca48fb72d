#include "host/mxf/rewrite/EditedHeader.h"

#include "tests/mxf/rewrite/LayoutOf.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <iterator>

namespace Corvid::mxf {
namespace {

using Testing::fill;
using Testing::headerPartition;
using Testing::join;
using Testing::klv;
using Testing::labelOf;
using Testing::LayoutOf;
using Testing::MxfBuilder;
using Testing::number;
using Testing::property;
using Testing::structuralKey;
using Testing::uuid;
using TestBytes = Testing::Bytes;

Bytes bytesOf(const TestBytes& bytes) { return Bytes(bytes.begin(), bytes.end()); }

/// A label that no register has.
TestBytes newLabel(unsigned char last) {
    TestBytes label = Testing::hex("06.0e.2b.34.01.01.01.01.0e.7f.00.00.00.00.00.00");
    label[15] = last;
    return label;
}

TestBytes labelOfTag(unsigned tag) {
    for (const auto& [each, label] : Testing::standardLabels()) {
        if (each == tag) {
            return label;
        }
    }
    return {};
}

KLV::Key keyOf(const TestBytes& bytes) { return KLV::Key(bytes.data()); }

/// Puts the ranges into the bytes.
TestBytes patched(TestBytes bytes, const ByteRanges& ranges) {
    for (const ByteRange& range : ranges) {
        EXPECT_LE(range.end(), bytes.size());
        std::copy(range.bytes.begin(), range.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return bytes;
}

/// The file after an edit in place; empty where it doesn't fit.
TestBytes edited(const LayoutOf& of, const HeaderEdit& edit, ByteRanges* written = nullptr) {
    EditedHeader header(of.layout, edit);
    if (header.fit() != 0) {
        return {};
    }
    const ByteRanges ranges = differences(EditedHeader::segmentsOf(of.layout), header.segments());
    if (written != nullptr) {
        *written = ranges;
    }
    return patched(of.bytes, ranges);
}

std::uint64_t missing(const LayoutOf& of, const HeaderEdit& edit) {
    return EditedHeader(of.layout, edit).fit();
}

TestBytes fileOf(const TestBytes& metadata) {
    return MxfBuilder().add(headerPartition(metadata)).build();
}

HeaderEdit oneSet(SetChange change) {
    HeaderEdit edit;
    edit.changedSets.push_back(std::move(change));
    return edit;
}

SetChange changed(std::size_t item, unsigned tag, std::optional<TestBytes> value) {
    SetChange change;
    change.item = item;
    change.properties.push_back({{Types::u16(tag), 0}, {}});
    if (value) {
        change.properties.back().value = bytesOf(*value);
    }
    return change;
}

SetChange added(std::size_t item, const TestBytes& label, const TestBytes& value,
                Types::u16 staticTag = 0) {
    SetChange change;
    change.item = item;
    change.added.push_back({labelOf(label), bytesOf(value), staticTag});
    return change;
}

NewSet newSet(std::size_t after, unsigned instance) {
    NewSet set;
    set.key = keyOf(structuralKey(Testing::identificationSet));
    set.after = after;
    set.properties.push_back({labelOf(Testing::instanceUIDLabel()), bytesOf(uuid(instance)), 0});
    return set;
}

/// A Preface (1) with a version, and a track (2) with a name.
TestBytes preface(const TestBytes& version = number(0x103, 2), const TestBytes& more = {},
                  unsigned octets = 4) {
    return Testing::set(structuralKey(Testing::prefaceSet), 1, {property(0x3B05, version), more},
                        octets);
}
TestBytes track(const TestBytes& name, const TestBytes& more = {}, unsigned octets = 4) {
    return Testing::set(structuralKey(Testing::timelineTrackSet), 2, {property(0x4802, name), more},
                        octets);
}
const TestBytes oldName = Testing::utf16(u"Old");
const TestBytes newName = Testing::utf16(u"A longer name");
const TestBytes primer = Testing::standardPrimer();
TestBytes primerWith(unsigned tag, const TestBytes& label) {
    auto entries = Testing::standardLabels();
    entries.emplace_back(tag, label);
    return Testing::primer(entries);
}
const TestBytes darkKlv = klv(uuid(7), {1, 2, 3}, 9);
const TestBytes identification = Testing::set(structuralKey(Testing::identificationSet), 3);

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

/// A set that changes in every property, and in none.
struct WholeChange {
    SetChange there;
    SetChange back;
};

WholeChange changeOfAll(const HeaderLayout& layout, std::size_t item) {
    WholeChange change;
    change.there.item = change.back.item = item;
    std::map<Types::u16, std::size_t> occurrences;
    LocalSet properties = layout.properties(layout.items()[item]);
    while (const auto each = properties.next()) {
        const PropertyName name{each->tag, occurrences[each->tag]++};
        // A directory of objects does not follow another InstanceUID.
        if (Types::UUID::fits(each->value) &&
            layout.instanceUID(layout.items()[item]) == Types::UUID(each->value)) {
            continue;
        }
        Bytes value;
        append(value, each->value);
        change.back.properties.push_back({name, value});
        value.push_back(0x55);
        change.there.properties.push_back({name, std::move(value)});
    }
    return change;
}

TEST(EditedHeader, takesEverySetOfEverySampleBackAndForth) {
    const auto folder = Testing::samplesDir();
    if (folder.empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    std::size_t edits = 0;
    std::size_t grown = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        const LayoutOf of(TestBytes(std::istreambuf_iterator<char>(stream), {}));
        EXPECT_EQ(edited(of, {}), of.bytes);
        for (std::size_t i = 0; i < of.layout.items().size(); i += 7) {
            const LayoutItem& item = of.layout.items()[i];
            if (item.kind != LayoutItem::Kind::set || isObjectRoot(item.triplet.key)) {
                continue;
            }
            const WholeChange change = changeOfAll(of.layout, i);
            ByteRanges none;
            EXPECT_EQ(edited(of, oneSet(change.back), &none), of.bytes);
            EXPECT_TRUE(none.empty());
            const TestBytes there = edited(of, oneSet(change.there));
            if (there.empty()) {
                ++grown;
                continue;
            }
            const LayoutOf changedFile(there);
            EXPECT_EQ(there == of.bytes, change.there.properties.empty());
            const auto instance = of.layout.instanceUID(item);
            ASSERT_TRUE(instance);
            SetChange back = change.back;
            back.item = changedFile.layout.find(*instance).value();
            const LayoutOf again(edited(changedFile, oneSet(back)));
            // Every KLV but fill has its bytes again.
            const auto contents = [](const HeaderLayout& layout) {
                std::vector<TestBytes> all;
                for (const LayoutItem& each : layout.items()) {
                    if (each.kind != LayoutItem::Kind::fill) {
                        all.push_back(Testing::copyOf(layout.value(each)));
                    }
                }
                return all;
            };
            EXPECT_EQ(contents(of.layout), contents(again.layout));
            ++edits;
        }
    }
    EXPECT_GT(edits, 100U);
    EXPECT_GT(grown, 0U);
}

} // namespace
} // namespace Corvid::mxf
