#include "host/mxf/SetReader.h"

#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"
#include "tests/mxf/ReadBack.h"

namespace Corvid::mxf {
namespace {

using Testing::batch;
using Testing::Bytes;
using Testing::hex;
using Testing::join;
using Testing::klv;
using Testing::number;
using Testing::property;
using Testing::utf16;

const Bytes trackKey = Testing::structuralKey(Testing::timelineTrackSet);
const Bytes unknownKey = hex("06.0e.2b.34.02.53.01.01.0f.55.66.77.01.02.03.04");
const Bytes number7 = number(7, 4);

/// A label that no register has.
const Bytes privateLabel = hex("06.0e.2b.34.01.01.01.01.0f.55.66.77.00.00.00.01");
constexpr unsigned privateTag = 0x8001;
/// LastModifiedDate, whose tag of the standard is 3b02.
constexpr unsigned secondTagOfDate = 0x8002;
constexpr unsigned swappedTag = 0x8003;
/// Has the label of the track's name, whose tag of the standard is 4802.
constexpr unsigned takenOverTag = 0x4B0A;

Bytes testPrimer() {
    auto entries = Testing::standardLabels();
    entries.emplace_back(privateTag, privateLabel);
    entries.emplace_back(secondTagOfDate, hex("06.0e.2b.34.01.01.01.02.07.02.01.10.02.04.00.00"));
    entries.emplace_back(swappedTag, hex("86.b1.01.c0.11.22.33.44.06.0e.2b.34.01.01.01.01"));
    entries.emplace_back(takenOverTag, hex("06.0e.2b.34.01.01.01.7f.01.07.01.02.01.00.00.00"));
    return Testing::primer(entries);
}

/// Reads one set after a Preface.
struct OneSet {
    explicit OneSet(const Bytes& set)
        : back(Testing::MxfBuilder().add(
              Testing::headerPartition(join({testPrimer(), Testing::smallSets(), set})))) {
        back.metadata();
        original = set;
    }

    Metadata::PartitionMetadata& partition() { return *back.read.metadata; }
    /// The set, if it is one.
    Metadata::MetadataSet* set() {
        return partition().size() == 3 ? *(partition().begin() + 2) : nullptr;
    }
    Metadata::DarkMetadataSet* dark() {
        return partition().darkBegin() == partition().darkEnd() ? nullptr
                                                                : *partition().darkBegin();
    }
    Bytes written() { return Testing::bytesOf(*set(), partition()); }

    Testing::ReadBack back;
    Bytes original;
};

class Kind : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    void visit(const MetaMetadata::UnknownAttribute& attribute) override {
        text = "unknown " + std::to_string(attribute.reason());
    }
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override {
        text = "misplaced " + Platform::toUtf8(attribute.metaElement().attribute("XMLTagName"));
    }
    void visit(const MetaMetadata::MetaAttribute& attribute) override {
        text = "own " + Platform::toUtf8(attribute.metaElement().attribute("XMLTagName"));
    }
    std::string text;
};

std::string kindOf(const Metadata::Element& element) {
    Kind kind;
    element.metaAttribute()->accept(kind);
    return kind.text;
}

/// The elements with a value, in label order, then the invalid ones.
std::vector<std::string> kindsOf(const Metadata::MetadataSet& set) {
    std::vector<std::string> kinds;
    for (const auto& [label, element] : set) {
        if (!element->isSkipped()) {
            kinds.push_back(kindOf(*element));
        }
    }
    for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element) {
        kinds.push_back(kindOf(**element));
    }
    return kinds;
}

struct Case {
    const char* name;
    std::vector<Bytes> properties; ///< after the InstanceUID
    std::vector<std::string> kinds;
    const char* warning; ///< part of it; empty for none
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

const std::string own = "own InstanceUID";
const std::string ownNumber = "own TrackID";
const std::string noLabel = "unknown 1";
const std::string unfit = "unknown 2";

class ReadsTrack : public ::testing::TestWithParam<Case> {};

TEST_P(ReadsTrack, withEveryPropertyKept) {
    OneSet one(Testing::set(trackKey, 5, GetParam().properties));
    ASSERT_NE(one.set(), nullptr) << one.back.warnings.lines();
    EXPECT_EQ(kindsOf(*one.set()), GetParam().kinds);
    EXPECT_EQ(one.written(), one.original);
    EXPECT_EQ(one.back.warnings.all.empty(), *GetParam().warning == '\0')
        << one.back.warnings.lines();
    EXPECT_TRUE(one.back.warnings.all.empty() || one.back.warnings.tell(GetParam().warning))
        << one.back.warnings.lines();
}

INSTANTIATE_TEST_SUITE_P(
    , ReadsTrack,
    ::testing::Values(
        Case{"Plain", {property(0x4801, number7)}, {own, ownNumber}, ""},
        Case{"NoOtherProperty", {}, {own}, ""},
        Case{"Misplaced", {property(0x3B05, hex("0103"))}, {own, "misplaced FormatVersion"}, ""},
        Case{"MisplacedThatDoesNotFit",
             {property(0x3B05, hex("010300"))},
             {own, unfit},
             "3b.05 FormatVersion: the value has 3 bytes, expected 2 bytes (VersionType)"},
        Case{"UnknownLabel", {property(privateTag, {1, 2, 3})}, {own, "unknown 0"}, ""},
        Case{"UnknownWithoutBytes", {property(privateTag, {})}, {own, "unknown 0"}, ""},
        Case{"LabelThatIsASwappedUuid", {property(swappedTag, {1})}, {own, "unknown 0"}, ""},
        Case{"TagOfNoLabel",
             {property(0x8FFF, {1, 2})},
             {own, noLabel},
             "8f.ff: the primer pack lacks the tag, so the property is kept as unknown"},
        Case{"StaticTagThatThePrimerLacks",
             {property(0x4804, number7)},
             {own, "own EssenceTrackNumber"},
             "set TimelineTrack: property 48.04 EssenceTrackNumber: the primer pack lacks the tag"},
        Case{"StaticTagWithAnotherLabel",
             {property(takenOverTag, utf16(u"V"))},
             {own, "own TrackName"},
             ""},
        Case{"TagTwice",
             {property(0x4801, number7), property(0x4801, number(8, 4))},
             {own, ownNumber, "misplaced TrackID"},
             "[repeated-property]"},
        Case{"TagThrice",
             {property(0x4801, number7), property(0x4801, number7), property(0x4801, {1})},
             {own, ownNumber, "misplaced TrackID", unfit},
             "[repeated-property]"},
        Case{"UnfitThenFit",
             {property(0x4801, {1}), property(0x4801, number7)},
             {own, unfit, "misplaced TrackID"},
             "the value has 1 byte, expected 4 bytes (UInt32)"},
        Case{"InstanceUIDTwice",
             {property(Testing::instanceUIDTag, Testing::uuid(6))},
             {own, unfit},
             "[unfit-identifier]"},
        Case{"GenerationUIDTwice",
             {property(0x0102, Testing::uuid(6)), property(0x0102, Testing::uuid(7))},
             {own, "own GenerationUID", unfit},
             "[unfit-identifier]"},
        Case{"OneLabelUnderTwoTags",
             {property(0x4802, utf16(u"V")), property(takenOverTag, utf16(u"W"))},
             {own, "own TrackName", "misplaced TrackName"},
             "4b.0a TrackName: is in the set more than once"},
        Case{"TooShort",
             {property(0x4801, {1, 2, 3})},
             {own, unfit},
             "48.01 TrackID: the value has 3 bytes, expected 4 bytes (UInt32), so it is kept"},
        Case{"ReferenceWithoutBytes",
             {property(0x4803, {})},
             {own, unfit},
             "the value is empty, expected 16 bytes (StrongReference)"},
        Case{"ReferenceOfZeros",
             {property(0x4803, Bytes(16))},
             {own, "own TrackSegment"},
             "the tag has its registered meaning [primer-lacks-tag]"},
        Case{"RationalOverZero",
             {property(0x4B01, number(25ULL << 32, 8))},
             {own, "own EditRate"},
             ""},
        Case{"TextWithTerminator", {property(0x4802, utf16(u"V\0\0"))}, {own, "own TrackName"}, ""},
        Case{"ProductVersionOfNineBytes",
             {property(0x3C07, Bytes(9, 1))},
             {own, "misplaced ToolkitVersion"},
             "the tag has its registered meaning"},
        Case{"TextOfZeros", {property(0x4802, Bytes(6))}, {own, "own TrackName"}, ""},
        Case{"TextThatItsTerminatorHides",
             {property(0x4802, utf16(std::u16string_view(u"\0V", 2)))},
             {own, unfit},
             "property 48.02 TrackName: the value has 4 bytes, expected a valid UTF16String"},
        Case{"MisplacedCollection",
             {property(0x3B06, batch({Testing::uuid(1)}, 16))},
             {own, "misplaced IdentificationList"},
             ""},
        Case{"LongestProperty", {property(privateTag, Bytes(65535))}, {own, "unknown 0"}, ""}),
    Testing::nameOfCase<Case>);

struct Collection {
    const char* name;
    Bytes value;
    bool fits;
};
void PrintTo(const Collection& c, std::ostream* out) { *out << c.name; }

class ReadsReferences : public ::testing::TestWithParam<Collection> {};

TEST_P(ReadsReferences, onlyWhereCountAndItemSizeAreTrue) {
    OneSet one(Testing::set(Testing::structuralKey(Testing::prefaceSet), 5,
                            {property(0x3B06, GetParam().value)}));
    ASSERT_NE(one.set(), nullptr);
    EXPECT_EQ(kindsOf(*one.set()).back(), GetParam().fits ? "own IdentificationList" : unfit);
    EXPECT_EQ(one.written(), one.original);
    EXPECT_EQ(one.back.warnings.tell("[unfit-value]"), !GetParam().fits);
}

const Bytes reference = Testing::uuid(3);

INSTANTIATE_TEST_SUITE_P(
    , ReadsReferences,
    ::testing::Values(Collection{"Two", batch({reference, reference}, 16), true},
                      Collection{"None", batch({}, 16), true},
                      Collection{"NoneOfNoSize", batch({}, 0), true},
                      Collection{"CountTooGreat", batch({reference}, 16, 2), false},
                      Collection{"CountGreatest", batch({reference}, 16, 0xFFFFFFFF), false},
                      Collection{"CountOverflowing", batch({reference}, 16, 0x10000001), false},
                      Collection{"CountTooSmall", batch({reference, reference}, 16, 1), false},
                      Collection{"ItemSizeZero", batch({reference}, 16, {}, 0), false},
                      Collection{"ItemSizeGreatest", batch({reference}, 16, {}, 0xFFFFFFFF), false},
                      Collection{"ManyOfNoSize", batch({}, 0, 0xFFFFFFFF), false},
                      Collection{"ItemsOfEightBytes", batch({reference}, 16, 2, 8), false},
                      Collection{"NoHead", {0, 0, 0}, false}, Collection{"Nothing", {}, false}),
    Testing::nameOfCase<Collection>);

TEST(SetReader, keepsOrderAndLengthFormOfASet) {
    for (unsigned octets = 2; octets <= 9; ++octets) {
        OneSet one(klv(trackKey,
                       join({property(0x4801, number7), property(privateTag, {1}),
                             property(Testing::instanceUIDTag, Testing::uuid(5)),
                             property(0x4802, utf16(u"V"))}),
                       octets));
        ASSERT_NE(one.set(), nullptr);
        EXPECT_EQ(one.set()->berLength(), octets);
        EXPECT_EQ(one.written(), one.original);
        EXPECT_EQ(one.back.warnings.lines(), "");
    }
}

TEST(SetReader, matchesKeysWithoutTheirVersion) {
    Bytes key = trackKey;
    key[7] = 0x42;
    OneSet one(Testing::set(key, 5, {property(0x4801, number7)}));
    ASSERT_NE(one.set(), nullptr);
    EXPECT_EQ(kindsOf(*one.set()), (std::vector<std::string>{own, ownNumber}));
    EXPECT_EQ(one.written(), one.original);
}

TEST(SetReader, readsASetOfAnAbstractClassAsThatClass) {
    OneSet one(Testing::set(Testing::structuralKey(0x01), 5));
    ASSERT_NE(one.set(), nullptr);
    ASSERT_NE(one.set()->metaMetadataSet(), nullptr);
    EXPECT_FALSE(one.set()->metaMetadataSet()->isConcrete());
    EXPECT_EQ(one.written(), one.original);
}

TEST(SetReader, keepsASetWithoutInstanceUID) {
    OneSet one(klv(trackKey, property(0x4801, number7)));
    ASSERT_NE(one.set(), nullptr);
    EXPECT_FALSE(one.set()->hasInstanceUID());
    EXPECT_EQ(one.written(), one.original);
    EXPECT_TRUE(one.back.warnings.tell("TimelineTrack: has no InstanceUID"))
        << one.back.warnings.lines();
}

TEST(SetReader, namesFileOffsetSetAndPropertyInAWarning) {
    OneSet one(Testing::set(trackKey, 5, {property(0x4801, {1})}));
    ASSERT_EQ(one.back.warnings.all.size(), 1U);
    const Warning& warning = one.back.warnings.all[0];
    EXPECT_EQ(warning.offset, one.back.read.end - 5);
    EXPECT_EQ(warning.set, "TimelineTrack");
    EXPECT_EQ(warning.localTag, 0x4801);
    EXPECT_EQ(warning.property, "TrackID");
}

struct Damage {
    const char* name;
    Bytes behind; ///< after the InstanceUID
};
void PrintTo(const Damage& c, std::ostream* out) { *out << c.name; }

class DamagedSet : public ::testing::TestWithParam<Damage> {};

TEST_P(DamagedSet, isKeptAsADarkSetByteForByte) {
    for (const Bytes& key : {trackKey, unknownKey}) {
        const Bytes value =
            join({property(Testing::instanceUIDTag, Testing::uuid(5)), GetParam().behind});
        OneSet one(klv(key, value, 3));
        EXPECT_EQ(one.set(), nullptr);
        ASSERT_NE(one.dark(), nullptr);
        EXPECT_EQ(one.dark()->key(), KLV::Key(key.data()));
        EXPECT_EQ(one.dark()->berLength(), 3);
        EXPECT_EQ(Bytes(one.dark()->value()->begin(), one.dark()->value()->end()), value);
        EXPECT_TRUE(one.back.warnings.tell("kept as a dark set")) << one.back.warnings.lines();
    }
}

Bytes manyProperties() {
    Bytes bytes;
    for (int i = 0; i != 40'000; ++i) {
        const Bytes one = property(privateTag, {});
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    , DamagedSet,
    ::testing::Values(Damage{"OneByteBehind", {0}}, Damage{"HalfAHead", {0x48, 0x01, 0x00}},
                      Damage{"CutProperty", property(0x4801, {1, 2}, 4)},
                      Damage{"LyingProperty", property(0x4801, number7, 0xFFFF)}),
    Testing::nameOfCase<Damage>);

TEST(SetReader, keepsASetOfFarTooManyPropertiesAsADarkSet) {
    OneSet one(Testing::set(trackKey, 5, {manyProperties()}));
    EXPECT_EQ(one.set(), nullptr);
    ASSERT_NE(one.dark(), nullptr);
    EXPECT_TRUE(one.back.warnings.tell("40001 properties")) << one.back.warnings.lines();
}

TEST(SetReader, keepsALocalSetOfAnUnknownClassAsAGroup) {
    OneSet one(klv(unknownKey,
                   join({property(0x4801, number7), property(privateTag, {1}),
                         property(Testing::instanceUIDTag, Testing::uuid(5)), property(0x8FFF, {}),
                         property(Testing::instanceUIDTag, Testing::uuid(6))}),
                   5));
    auto* group = dynamic_cast<Metadata::DarkParsedGroup*>(one.set());
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->instanceUID(), Types::UUID(Types::ByteView{Testing::uuid(5).data(), 16}));
    EXPECT_EQ(group->countValues(), 5U);
    EXPECT_EQ(one.written(), one.original);
}

TEST(SetReader, keepsAnUnknownSetWithoutInstanceUIDAsADarkSet) {
    OneSet one(klv(unknownKey, property(0x4801, number7)));
    EXPECT_EQ(one.set(), nullptr);
    EXPECT_NE(one.dark(), nullptr);
    EXPECT_EQ(one.back.warnings.lines(), "");
}

TEST(SetReader, keepsASetOfAnotherCodingAsADarkSet) {
    Bytes key = trackKey;
    key[5] = 0x13;
    OneSet one(Testing::set(key, 5));
    EXPECT_EQ(one.set(), nullptr);
    EXPECT_NE(one.dark(), nullptr);
}

} // namespace
} // namespace Corvid::mxf
