#include "host/klv/BerInput.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/HeaderPartition.h"

/// Local sets whose properties have BER lengths (SMPTE ST 336), announced by the sixth byte of their
/// key.
namespace Corvid::mxf {
namespace {

using Testing::ber;
using Testing::Bytes;
using Testing::hex;
using Testing::join;
using Testing::klv;
using Testing::MxfBuilder;
using Testing::number;
using Testing::ReadBack;
using Testing::utf16;

Bytes berKey(Bytes key) {
    key[5] = 0x13;
    return key;
}

const Bytes trackKey = berKey(Testing::structuralKey(Testing::timelineTrackSet));
const Bytes unknownKey = berKey(hex("06.0e.2b.34.02.53.01.01.0f.55.66.77.01.02.03.04"));

/// A property whose length has so many octets.
Bytes property(unsigned tag, const Bytes& value, unsigned octets = 1) {
    return join({number(tag, 2), ber(value.size(), octets), value});
}

Bytes instanceUID(unsigned octets = 1) {
    return property(Testing::instanceUIDTag, Testing::uuid(5), octets);
}

/// Reads one set after a Preface and a ContentStorage.
struct OneSet {
    explicit OneSet(const Bytes& set)
        : back(MxfBuilder().add(Testing::headerPartition(
              join({Testing::standardPrimer(), Testing::smallSets(), set})))) {
        back.metadata();
    }
    Metadata::PartitionMetadata& partition() { return *back.read.metadata; }
    Metadata::MetadataSet* set() {
        return partition().size() == 3 ? *(partition().begin() + 2) : nullptr;
    }
    Bytes written() { return Testing::bytesOf(*set(), partition()); }

    ReadBack back;
};

struct Form {
    const char* name;
    Bytes value;
    unsigned octets;
};
void PrintTo(const Form& c, std::ostream* out) { *out << c.name; }

class BerCodedSet : public ::testing::TestWithParam<Form> {};

TEST_P(BerCodedSet, isReadAndWrittenAsItWas) {
    for (const Bytes& key : {trackKey, unknownKey}) {
        const Bytes original = klv(key, GetParam().value);
        OneSet one(original);
        ASSERT_NE(one.set(), nullptr) << one.back.warnings.lines();
        EXPECT_EQ(one.set()->key(), KLV::Key(key.data()));
        EXPECT_EQ(one.set()->propertyBerLength(), GetParam().octets);
        EXPECT_EQ(one.set()->instanceUID(),
                  Types::UUID(Types::ByteView{Testing::uuid(5).data(), Types::UUID::fixedSize}));
        EXPECT_EQ(one.set()->serializedSize(), original.size());
        EXPECT_EQ(one.written(), original);
        EXPECT_EQ(one.back.warnings.lines(), "");
    }
}

const Bytes track7 = number(7, 4);
const Bytes longName = utf16(std::u16string(100, u'n'));

INSTANTIATE_TEST_SUITE_P(
    , BerCodedSet,
    ::testing::Values(
        Form{"OfShortLengths", join({instanceUID(), property(0x4801, track7)}), 1},
        Form{"OfAsManyOctetsAsNeeded",
             join({instanceUID(), property(0x4802, longName, 2), property(0x4801, track7)}), 1},
        Form{"OfTwoOctets", join({instanceUID(2), property(0x4802, longName, 2)}), 2},
        Form{"OfFourOctets", join({property(0x4801, track7, 4), instanceUID(4)}), 4},
        Form{"OfNineOctets", join({property(0x4801, track7, 9), instanceUID(9)}), 9},
        Form{"WithTheLongestValue", join({instanceUID(), property(0x4802, Bytes(65534), 3)}), 1}),
    Testing::nameOfCase<Form>);

struct Damage {
    const char* name;
    Bytes behind; ///< the InstanceUID
    const char* warning;
};
void PrintTo(const Damage& c, std::ostream* out) { *out << c.name; }

class DamagedBerCodedSet : public ::testing::TestWithParam<Damage> {};

TEST_P(DamagedBerCodedSet, isKeptAsADarkSetByteForByte) {
    for (const Bytes& key : {trackKey, unknownKey}) {
        const Bytes value = join({instanceUID(), GetParam().behind});
        OneSet one(klv(key, value));
        EXPECT_EQ(one.set(), nullptr);
        ASSERT_NE(one.partition().darkBegin(), one.partition().darkEnd());
        const auto& dark = **one.partition().darkBegin();
        EXPECT_EQ(dark.key(), KLV::Key(key.data()));
        EXPECT_EQ(Bytes(dark.value()->begin(), dark.value()->end()), value);
        EXPECT_TRUE(one.back.warnings.tell(GetParam().warning)) << one.back.warnings.lines();
        EXPECT_TRUE(one.back.warnings.tell("so the set is kept as a dark set"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , DamagedBerCodedSet,
    ::testing::Values(
        Damage{"OfSeveralForms", property(0x4801, track7, 4), "are of several forms"},
        Damage{"OfSeveralFormsThatAreAllLong",
               join({property(0x4802, longName, 3), property(0x4801, track7, 2)}),
               "are of several forms"},
        Damage{"WithAValueBeyondTheLongest", property(0x4802, Bytes(65536), 4),
               "a property of 65536 bytes, expected at most 65535"},
        Damage{"WithAnIndefiniteLength", hex("4801 80 00000007"), "are not a whole property"},
        Damage{"WithTheGreatestLength", join({number(0x4801, 2), ber(~std::uint64_t{0}, 9)}),
               "are not a whole property"},
        Damage{"CutInATag", {0x48}, "are not a whole property"},
        Damage{"CutInALength", hex("4801 83 00"), "are not a whole property"},
        Damage{"CutInAValue", hex("4801 04 0000"), "are not a whole property"}),
    Testing::nameOfCase<Damage>);

Bytes berSmallSets() { return Testing::withBerLengths(Testing::smallSets()); }

TEST(BerCodedSets, areTheStructuralMetadataOfTheirFile) {
    ReadBack back(MxfBuilder().add(
        Testing::headerPartition(join({Testing::standardPrimer(), berSmallSets()}))));
    const auto& metadata = back.metadata();
    EXPECT_TRUE(back.read.isWhole);
    EXPECT_EQ(metadata.find(Metadata::Structural::StructuralMetadataKeys::preface()).size(), 1U);
    Templates::vector<const Metadata::MetadataSet*> order;
    EXPECT_EQ(metadata.calculateSerializationOrder(order, true, true), 0U);
    EXPECT_EQ(order.size(), 2U);
    EXPECT_EQ(back.warnings.lines(), "");
}

TEST(BerCodedSets, areWrittenToAFileAsTheyWere) {
    ReadBack back(MxfBuilder().add(
        Testing::headerPartition(join({Testing::standardPrimer(), berSmallSets()}))));
    const Bytes written = Testing::headerPartitionOf(back.metadata());
    const Bytes sets = berSmallSets();
    EXPECT_NE(std::search(written.begin(), written.end(), sets.begin(), sets.end()), written.end());
}

TEST(BerCodedSets, areReadBeyondAHeaderByteCountThatEndsInsideThem) {
    auto header = Testing::headerPartition(join({Testing::standardPrimer(), berSmallSets()}));
    header.headerByteCount = header.metadata.size() - 3;
    ReadBack back(MxfBuilder().add(header).add(Testing::footerPartition()));
    EXPECT_EQ(back.metadata(PartitionChoice::header()).size(), 2U);
    EXPECT_TRUE(back.warnings.tell("the header metadata ends inside a set"))
        << back.warnings.lines();
}

TEST(BerCodedSets, neverHideAnIndexTable) {
    auto header = Testing::headerPartition();
    header.headerByteCount = 0;
    header.behindMetadata = klv(berKey(Testing::indexSegmentKey()), instanceUID());
    ReadBack back(MxfBuilder().add(header));
    const auto& metadata = back.metadata();
    EXPECT_EQ(metadata.size(), 2U);
    EXPECT_EQ(metadata.darkBegin(), metadata.darkEnd());
}

} // namespace
} // namespace Corvid::mxf
