#include "host/klv/BerOutput.h"

#include "host/dataio/Memory.h"
#include "host/klv/BerInput.h"

#include <gtest/gtest.h>

namespace Corvid::KLV {
namespace {

constexpr std::uint64_t values[] = {0,          1,           0x7F,    0x80,       0xFF,
                                    0x100,      0xFFFF,      0x10000, 0xFFFFFF,   0x1000000,
                                    0xFFFFFFFF, 0x100000000, 1 << 20, 1ULL << 40, 1ULL << 48,
                                    1ULL << 56, ~0ULL >> 1,  ~0ULL};

TEST(BerOutput, isReadBackInEveryForm) {
    for (const std::uint64_t value : values) {
        for (unsigned char wanted = 1; wanted <= 9; ++wanted) {
            DataIO::Memory::MemoryDataSink sink;
            writeBer(sink, value, wanted);
            const BerLength length = readBer(sink.rawBuffer(), sink.serializedSize());
            EXPECT_EQ(length.value, value);
            EXPECT_EQ(length.octets, sink.serializedSize());
            EXPECT_EQ(length.octets, berOctets(value, wanted));
            EXPECT_GE(length.octets, wanted);
        }
    }
}

TEST(BerOutput, takesNoMoreOctetsThanItNeeds) {
    EXPECT_EQ(berOctets(0x7F, 1), 1);
    EXPECT_EQ(berOctets(0x80, 1), 2);
    EXPECT_EQ(berOctets(0xFF, 2), 2);
    EXPECT_EQ(berOctets(0x100, 2), 3);
    EXPECT_EQ(berOctets(0xFFFFFF, 4), 4);
    EXPECT_EQ(berOctets(0x1000000, 4), 5);
    EXPECT_EQ(berOctets(~0ULL, 4), 9);
}

} // namespace
} // namespace Corvid::KLV
