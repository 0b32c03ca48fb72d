#include "fuzz/xml/Encoding.h"

#include <gtest/gtest.h>

namespace Corvid::Fuzzing {
namespace {

using namespace std::string_literals;

struct Case {
    const char* name;
    std::string bytes;
    Encoding encoding;
    std::string text;
};

std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

class Decodes : public ::testing::TestWithParam<Case> {};

TEST_P(Decodes, andEncodesToTheSameBytes) {
    const Case& param = GetParam();
    const DecodedText decoded =
        decode(reinterpret_cast<const std::uint8_t*>(param.bytes.data()), param.bytes.size());
    EXPECT_EQ(decoded.encoding, param.encoding);
    EXPECT_EQ(decoded.text, param.text);
    EXPECT_EQ(encode(decoded), param.bytes);
}

INSTANTIATE_TEST_SUITE_P(
    , Decodes,
    ::testing::Values(
        Case{"Nothing", "", Encoding::bytes, ""}, Case{"Bytes", "<\xFF", Encoding::bytes, "<\xFF"},
        Case{"Utf8Mark", "\xEF\xBB\xBF<", Encoding::bytesWithMark, "<"},
        Case{"BigEndian", "\0<\0\xE9"s, Encoding::bigEndian, "<\xC3\xA9"},
        Case{"BigEndianMark", "\xFE\xFF\x20\xAC"s, Encoding::bigEndianWithMark, "\xE2\x82\xAC"},
        Case{"LittleEndian", "<\0\xE9\0"s, Encoding::littleEndian, "<\xC3\xA9"},
        Case{"LittleEndianMark", "\xFF\xFE\x3C\xD8\xAC\xDF"s, Encoding::littleEndianWithMark,
             "\xF0\x9F\x8E\xAC"},
        Case{"LoneSurrogates", "\xFE\xFF\xD8\0\0a\xDC\0\xD8\1"s, Encoding::bigEndianWithMark,
             "\xED\xA0\x80"
             "a\xED\xB0\x80\xED\xA0\x81"}),
    nameOfCase);

TEST(Encode, writesWhatLatin1LacksAsReference) {
    EXPECT_EQ(encode({Encoding::latin1, "\xC3\xA9\xE2\x82\xAC<"}), "\xE9&#8364;<");
}

TEST(Encode, takesBytesThatAreNoUtf8AsCharacters) {
    EXPECT_EQ(encode({Encoding::bigEndian, "\xFF\xE2\x82"}), "\0\xFF\0\xE2\0\x82"s);
}

TEST(Decode, dropsAnOddByte) {
    const std::string bytes("\xFE\xFF\0<\0", 5);
    EXPECT_EQ(decode(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()).text, "<");
}

} // namespace
} // namespace Corvid::Fuzzing
