#include "tests/XMLBuilder/RoundTrip.h"
#include "tests/XMLBuilder/Things.h"

#include <regex>
#include <set>

namespace Corvid::Testing {
namespace {

/// Reads the document and writes what was read.
std::string readAndWritten(const std::string& xml,
                           const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                           Flags flags) {
    Metadata::PartitionMetadata partition(dictionary);
    XML2Partition::getPartitionMetadataFromBuffer(
        reinterpret_cast<const unsigned char*>(xml.data()), static_cast<unsigned>(xml.size()),
        &partition);
    return documentOf(partition, flags);
}

/// Whether a set is in a document twice: a set that a floating one shares with the tree of the
/// Preface does. Read back it is two sets, until somebody merges them.
bool holdsASetTwice(const std::string& xml) {
    static const std::regex identifier("InstanceUID=\"([^\"]*)\"");
    std::set<std::string> seen;
    for (std::sregex_iterator i(xml.begin(), xml.end(), identifier), end; i != end; ++i) {
        if (!seen.insert((*i)[1]).second) {
            return true;
        }
    }
    return false;
}

/// Writes, reads and writes again: but for identifiers and empty elements the texts are equal.
void expectRoundTrip(Metadata::PartitionMetadata& partition, Flags flags) {
    const auto& dictionary = partition.partitionDictionary().dictionary();
    const std::string first = documentOf(partition, flags);
    EXPECT_EQ(validityErrors(*dictionary, first), "");
    const std::string second = readAndWritten(first, dictionary, flags);
    if (holdsASetTwice(first)) {
        return;
    }
    const std::string expected = withoutIdentifiers(withoutEmptyElements(first));
    const std::string found = withoutIdentifiers(withoutEmptyElements(second));
    EXPECT_TRUE(expected == found) << difference(expected, found);
}

class RoundTrip : public Things {
protected:
    RoundTrip() {
        model_.references(model_.set("Preface", 1), "DescriptiveSchemes", {});
        model_.reference(**model_.partition.begin(), "ContentStorageObject", 2);
        thing_ = &model_.set("Thing", 2);
    }

    /// Gives the thing a value of its type, and a batch and an array of two of them.
    template <class T> void add(const char* type, const T& value) {
        model_.value(*thing_, type, value);
        addItems<Types::Array>(std::string(type) + "Array", value);
        addItems<Types::Batch>(std::string(type) + "Batch", value);
        added_.insert(type);
    }

    template <class Kind, class T> void addItems(const std::string& tag, const T& value) {
        auto items = Templates::auto_ptr<Types::Collection>(new Kind(value.serializedSize()));
        items->add(value.clone());
        items->add(value.clone());
        model_.element<Metadata::CollectionElement>(*thing_, tag).set(std::move(items));
    }

    Model::Set* thing_;
    std::set<std::string> added_;
};

template <std::size_t Size> std::array<Types::u8, Size> bytesFrom(Types::u8 first) {
    std::array<Types::u8, Size> bytes;
    for (std::size_t i = 0; i != Size; ++i) {
        bytes[i] = static_cast<Types::u8>(first + i);
    }
    return bytes;
}

TEST_F(RoundTrip, keepsAValueOfEveryTypeAndCollectionsOfThem) {
    using namespace Types;
    const u8 three[] = {0, 0x7F, 0xFF};
    RGBALayout layout;
    layout.set(0, {'R', 8});
    layout.set(2, {'B', 10});
    // The items of a collection have one size by their type, which these two have not.
    model_.value(*thing_, "J2KQuantisationDefault", J2KQuantisationDefault(34, three, 3));
    model_.value(*thing_, "J2KCodingStyleDefault", J2KCodingStyleDefault(1, 0xFFFFFFFF, three, 3));
    added_.insert({"J2KQuantisationDefault", "J2KCodingStyleDefault"});
    add("J2KPictureComponent", J2KPictureComponent(7, 1, 255));
    add("Unknown", Unknown(ByteView{three, 3}));
    add("VersionType", VersionType(1, 255));
    add("UTF16String",
        UTF16String(Platform::fromUtf8(" <\xC3\xA9&\r\n\t\xF0\x9F\x8E\xA5> ").c_str()));
    add("UTF16", UTF16(0x20AC));
    add("UniversalLabel", UniversalLabel(bytesFrom<16>(0xF8)));
    add("UMID64", UMID64(bytesFrom<64>(0xF0)));
    add("UMID32", UMID32(bytesFrom<32>(0)));
    add("UInt8", UInt8(255));
    add("UInt64", UInt64(18446744073709551615U));
    add("UInt32", UInt32(4294967295U));
    add("UInt16", UInt16(65535));
    add("Timestamp", Timestamp(65535, 255, 255, 255, 255, 255, 1020));
    add("SignalStandard", SignalStandard(255));
    add("RGBALayout", layout);
    add("Rational", Rational(-2147483647 - 1, -1));
    add("ProductVersion", ProductVersion(1, 2, 3, 65535, ProductVersion::privateBuild));
    add("Position", Position(-9223372036854775807 - 1));
    add("Orientation", Orientation(255));
    add("Length", Length(9223372036854775807));
    add("ISO7String", ISO7String("a <&> b"));
    add("Int8", Int8(-128));
    add("Int64", Int64(-9223372036854775807 - 1));
    add("Int32", Int32(-2147483647 - 1));
    add("Int16", Int16(-32768));
    add("DataStream", DataStream(three, 3));
    add("Boolean", Boolean(true));
    add("UUID", UUID(bytesFrom<16>(1)));
    // No reader has the rest: references have a test of their own, tags and data values no text.
    for (const char* other : {"StrongReference", "WeakReference", "LocalTag", "DataValue"}) {
        added_.insert(other);
    }
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if (std::is_base_of_v<SimpleDataType, Class>) {                                                \
        EXPECT_EQ(added_.count(#Class), 1U) << #Class;                                             \
    }
#include "host/types/ValueTypes.def"

    expectRoundTrip(model_.partition, {});
    const std::string xml = documentOf(model_.partition, {});
    const auto sets = readXml(model_, xml);
    ASSERT_EQ(sets.size(), 2U);
    for (const auto& [label, element] : *thing_) {
        const auto* found = sets.back()->find(label);
        ASSERT_NE(found, nullptr);
        if (!element->isSkipped() &&
            label != Metadata::Structural::StructuralMetadataULs::instanceUID()) {
            ASSERT_FALSE(found->isSkipped()) << Platform::toUtf8(label.toString());
            DataIO::Memory::MemoryDataSink a;
            DataIO::Memory::MemoryDataSink b;
            element->serialize(a);
            found->serialize(b);
            EXPECT_TRUE(std::equal(a.rawBuffer(), a.rawBuffer() + a.serializedSize(), b.rawBuffer(),
                                   b.rawBuffer() + b.serializedSize()))
                << Platform::toUtf8(label.toString());
        }
    }
}

TEST_F(RoundTrip, keepsReferencesExtensionsAndDarkSets) {
    model_.reference(*thing_, "StrongReference", 3);
    model_.reference(*thing_, "WeakReference", 1);
    model_.references(*thing_, "StrongReferenceArray", {4, 5});
    model_.references(*thing_, "WeakReferenceBatch", {2, 5, 99});
    for (const Types::u8 instance : {Types::u8{3}, Types::u8{4}, Types::u8{5}}) {
        model_.value(model_.set("Other", instance), "OtherNumber", Types::UInt8(instance));
    }
    model_.set("Thing", 6); // outside the tree
    model_.misplaced<Metadata::SimpleElement>(*thing_, "OtherNumber").set(Types::UInt8(7).clone());
    model_.unknown(*thing_, 0x7F01, "bytes");
    model_.darkSet(Model::darkKey(), 9, "dark");
    for (const bool referencesAsValues : {false, true}) {
        expectRoundTrip(model_.partition, {referencesAsValues, false});
    }
}

class SamplesRoundTrip : public testing::TestWithParam<bool> {};

TEST_P(SamplesRoundTrip, keepsTheMetadataOfRealFiles) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    forEachSample([](Metadata::PartitionMetadata& partition) {
        expectRoundTrip(partition, {GetParam(), false});
    });
}

INSTANTIATE_TEST_SUITE_P(, SamplesRoundTrip, testing::Bool(), [](const auto& which) {
    return which.param ? "ReferencesAsValues" : "ReferencesAsLinks";
});

} // namespace
} // namespace Corvid::Testing
