#include "host/klv/Key.h"

#include <gtest/gtest.h>

namespace Corvid::KLV {
namespace {

using Bytes = std::array<unsigned char, 16>;

const Bytes preface = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                       0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00};

Key with(std::size_t index, unsigned char value) {
    Bytes bytes = preface;
    bytes[index] = value;
    return Key(bytes);
}

TEST(Key, matchesWhateverItsVersionByte) {
    EXPECT_TRUE(matches(Key(preface), with(7, 0x7F)));
    EXPECT_NE(Key(preface), with(7, 0x7F));
    for (std::size_t i = 0; i != 16; ++i) {
        if (i != 7) {
            EXPECT_FALSE(matches(Key(preface), with(i, 0x7E))) << i;
        }
    }
}

TEST(Key, tellsStructuralSetsByTheFirstFourteenBytes) {
    EXPECT_TRUE(isStructuralMetadataSet(Key(preface)));
    for (std::size_t i = 0; i != 16; ++i) {
        EXPECT_EQ(isStructuralMetadataSet(with(i, 0x7E)), i == 7 || i >= 14) << i;
    }
}

TEST(Key, tellsLocalSetsByTheFirstSevenBytes) {
    for (std::size_t i = 0; i != 16; ++i) {
        EXPECT_EQ(isLocalSet(with(i, 0x7E)), i >= 7) << i;
    }
}

TEST(Key, matchesWhateverTheCodingOfItsProperties) {
    const Key berCoded = with(5, 0x13);
    EXPECT_TRUE(matches(Key(preface), berCoded));
    EXPECT_NE(Key(preface), berCoded);
    EXPECT_TRUE(isStructuralMetadataSet(berCoded));
    EXPECT_TRUE(isLocalSet(berCoded));
    EXPECT_TRUE(hasBerLengths(berCoded));
    EXPECT_FALSE(hasBerLengths(Key(preface)));
}

TEST(Key, hasACodingOnlyWhereItIsThatOfALocalSet) {
    for (const std::size_t i : {0U, 1U, 2U, 3U, 4U, 6U}) {
        Bytes bytes = with(i, 0x7E).bytes();
        const Key twoBytes(bytes);
        bytes[5] = 0x13;
        EXPECT_FALSE(matches(twoBytes, Key(bytes))) << i;
        EXPECT_FALSE(hasBerLengths(Key(bytes))) << i;
    }
}

TEST(Key, readsItsOwnText) {
    const Key key(preface);
    const Utf16Text text = key.toString();
    EXPECT_EQ(Platform::toUtf8(text), "06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00");
    EXPECT_EQ(Key(text.c_str(), Types::dottedHexadecimal), key);
}

} // namespace
} // namespace Corvid::KLV
