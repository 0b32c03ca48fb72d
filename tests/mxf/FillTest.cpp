#include "host/mxf/Fill.h"

#include "tests/mxf/ReadBack.h"

namespace Corvid::mxf {
namespace {

TEST(FillItem, reachesTheNextMultipleThatLeavesRoomForAnItem) {
    EXPECT_EQ(fillUpToKag(0, 512), 0U);
    EXPECT_EQ(fillUpToKag(512, 512), 0U);
    EXPECT_EQ(fillUpToKag(1, 512), 511U);
    EXPECT_EQ(fillUpToKag(492, 512), 20U);
    EXPECT_EQ(fillUpToKag(493, 512), 531U);
    EXPECT_EQ(fillUpToKag(511, 512), 513U);
    EXPECT_EQ(fillUpToKag(5, 7), 23U);
    EXPECT_EQ(fillUpToKag(0xFFFFFFFFFFU, 1U << 20), (1U << 20) + 1);
}

TEST(FillItem, isNotNeededWithoutKag) {
    EXPECT_EQ(fillUpToKag(5, 0), 0U);
    EXPECT_EQ(fillUpToKag(5, 1), 0U);
}

TEST(FillItem, hasTheSizeThatIsWanted) {
    for (const std::size_t size : {20U, 21U, 512U, 4116U, 4117U, 100'000U}) {
        DataIO::Memory::MemoryDataSink sink;
        writeFill(sink, size);
        const Testing::Bytes bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        EXPECT_EQ(bytes, Testing::fill(size - 20)) << size;
    }
    DataIO::Memory::MemoryDataSink nothing;
    writeFill(nothing, 0);
    EXPECT_EQ(nothing.serializedSize(), 0U);
}

TEST(FillItem, takesALongerLengthFromItsValue) {
    for (const std::size_t value : {0xFFFFFFU, 0x1000000U}) {
        const std::size_t size = 20 + value;
        DataIO::Memory::MemoryDataSink sink;
        writeFill(sink, size);
        ASSERT_EQ(sink.serializedSize(), size);
        EXPECT_EQ(sink.rawBuffer()[16], value == 0xFFFFFF ? 0x83 : 0x84);
        const auto length = KLV::readBer(sink.rawBuffer() + 16, 9);
        EXPECT_EQ(16 + length.octets + length.value, size);
    }
}

} // namespace
} // namespace Corvid::mxf
