#include "host/klv/Triplet.h"

#include "host/base/Exceptions.h"
#include "host/dataio/MemorySource.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvid::KLV {
namespace {

using Bytes = std::vector<unsigned char>;

/// A head, after three bytes that belong to something else.
Bytes headWith(const Bytes& length) {
    Bytes bytes = {0xAA, 0xAA, 0xAA};
    for (unsigned char i = 1; i <= Key::length; ++i) {
        bytes.push_back(i);
    }
    bytes.insert(bytes.end(), length.begin(), length.end());
    return bytes;
}

Triplet read(const Bytes& bytes) {
    DataIO::MemorySource source(bytes.data(), bytes.size());
    DataIO::ReadWindow window(source);
    return readTriplet(window, 3);
}

TEST(Triplet, tellsWhereKeyAndValueStand) {
    const Triplet triplet = read(headWith({0x83, 0, 1, 0}));
    EXPECT_EQ(triplet.key[0], 1);
    EXPECT_EQ(triplet.key[15], 16);
    EXPECT_EQ(triplet.offset, 3U);
    EXPECT_EQ(triplet.length.value, 256U);
    EXPECT_EQ(triplet.length.octets, 4);
    EXPECT_EQ(triplet.headSize(), 20U);
    EXPECT_EQ(triplet.valueOffset(), 23U);
    EXPECT_EQ(triplet.end(), 279U);
}

TEST(Triplet, endsAtTheGreatestOffsetWhereItsLengthIsBeyond) {
    const Triplet triplet = read(headWith({0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(triplet.end(), ~std::uint64_t{0});
}

TEST(Triplet, refusesEveryPrefixOfItsHead) {
    const Bytes whole = headWith({0x88, 0, 0, 0, 0, 0, 0, 0, 1});
    for (std::size_t size = 0; size != whole.size(); ++size) {
        EXPECT_THROW(read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                     Exceptions::InvalidLength)
            << size;
    }
    EXPECT_NO_THROW(read(whole));
}

TEST(Triplet, tellsTheOffsetOfALengthThatItRefuses) {
    try {
        read(headWith({0x80}));
        FAIL();
    } catch (const Exceptions::InvalidLength& error) {
        EXPECT_NE(Platform::toUtf8(error.message()).find("byte 3"), std::string::npos);
    }
}

} // namespace
} // namespace Corvid::KLV
