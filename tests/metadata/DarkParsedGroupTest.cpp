#include "host/klv/BerOutput.h"
#include "tests/metadata/MetadataSupport.h"

namespace Corvid::Testing {
namespace {

using namespace Metadata;

/// A group of three properties after a length field of that many octets.
Bytes groupBytes(unsigned char octets, const Bytes& padding) {
    DataIO::Memory::MemoryDataSink sink;
    privateKey().serialize(sink);
    KLV::writeBer(sink, 7 + 20 + 4 + padding.size(), octets);
    const Bytes front = {0x80, 0x01, 0, 3, 1, 2, 3, 0x3C, 0x0A, 0, 16};
    sink.write(front.data(), front.size());
    sink.write(uuidOf(0xAABBCCDD).rawBuffer(), 16);
    const Bytes back = {0x00, 0x07, static_cast<u8>(padding.size() >> 8),
                        static_cast<u8>(padding.size())};
    sink.write(back.data(), back.size());
    sink.write(padding.data(), padding.size());
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

class DarkParsedGroupTest : public MetadataTest, public ::testing::WithParamInterface<int> {
protected:
    DarkParsedGroup& makeGroup(const Bytes& padding) {
        auto& group = partition.createDarkParsedGroup(privateKey());
        group.createInvalidElement(unknown(0x8001), 0x8001).parse(viewOf({1, 2, 3}));
        group.setInstanceUID(uuidOf(0xAABBCCDD), 0x3C0A);
        group.createInvalidElement(unknown(0x0007), 0x0007).parse(viewOf(padding));
        return group;
    }
};

TEST_P(DarkParsedGroupTest, serialisesToTheBytesItWasReadFrom) {
    const auto octets = static_cast<unsigned char>(GetParam());
    auto& small = makeGroup({});
    small.setBerLength(octets);
    const Bytes bytes = bytesOf(small, partition);
    EXPECT_EQ(bytes, groupBytes(octets, {}));
    EXPECT_EQ(bytes.size(), 16U + octets + 31);
    EXPECT_EQ(bytes[16], octets == 1 ? 31 : 0x80 + octets - 1);

    const Bytes padding(300, 0xEE);
    auto& large = makeGroup(padding);
    large.setBerLength(octets);
    EXPECT_EQ(bytesOf(large, partition), groupBytes(octets, padding));
}

INSTANTIATE_TEST_SUITE_P(BerOctets, DarkParsedGroupTest, ::testing::Range(1, 10));

using DarkParsedGroups = DarkParsedGroupTest;

TEST_F(DarkParsedGroups, areFoundByReferencesAndHaveNoDefinition) {
    auto& group = makeGroup({});
    EXPECT_EQ(group.metaMetadataSet(), nullptr);
    EXPECT_EQ(group.key(), privateKey());
    ASSERT_EQ(partition.resolve(uuidOf(0xAABBCCDD)).size(), 1U);
    EXPECT_EQ(&partition.resolve(uuidOf(0xAABBCCDD)).front(), &group);
}

TEST_F(DarkParsedGroups, leaveThePrimerAsItIs) {
    bytesOf(makeGroup({}), partition);
    const auto& primer = partition.partitionDictionary();
    EXPECT_EQ(primer.begin(), primer.end());
}

TEST_F(DarkParsedGroups, withoutTagForTheirInstanceUidGetTheStaticOne) {
    auto& group = partition.createDarkParsedGroup(privateKey());
    group.setInstanceUID(uuidOf(1), 0);
    const Bytes bytes = bytesOf(group, partition);
    ASSERT_EQ(bytes.size(), 16U + 4 + 20);
    EXPECT_EQ(Bytes(bytes.begin() + 20, bytes.begin() + 24), (Bytes{0x3C, 0x0A, 0, 16}));
}

} // namespace
} // namespace Corvid::Testing
