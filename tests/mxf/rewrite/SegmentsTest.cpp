#include "host/mxf/rewrite/Segments.h"

#include "tests/mxf/ReadBack.h"

#include <random>

namespace Corvid::mxf {
namespace {

/// Segments of text at offsets.
struct Texts {
    std::vector<std::pair<std::uint64_t, std::string>> parts;

    operator Segments() const {
        Segments segments;
        for (const auto& [offset, text] : parts) {
            segments.push_back(
                {offset, {reinterpret_cast<const Types::u8*>(text.data()), text.size()}});
        }
        return segments;
    }
};

std::string textOf(const ByteRanges& ranges) {
    std::string text;
    for (const ByteRange& range : ranges) {
        text += std::to_string(range.offset) + ":";
        for (const Types::u8 byte : range.bytes) {
            text += byte == 0 ? '_' : static_cast<char>(byte);
        }
        text += " ";
    }
    return text;
}

struct Case {
    const char* name;
    Texts before;
    Texts now;
    const char* differences;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Differences : public ::testing::TestWithParam<Case> {};

TEST_P(Differences, areAsFewAsCanBe) {
    EXPECT_EQ(textOf(differences(GetParam().before, GetParam().now)), GetParam().differences);
}

INSTANTIATE_TEST_SUITE_P(
    , Differences,
    ::testing::Values(
        Case{"Nothing", {}, {}, ""}, Case{"Same", {{{10, "abc"}}}, {{{10, "a"}, {11, "bc"}}}, ""},
        Case{"OneByte", {{{10, "abcdef"}}}, {{{10, "abXdef"}}}, "12:X "},
        Case{"NearBytesTogether", {{{10, "abcdef"}}}, {{{10, "aXcdYf"}}}, "11:XcdY "},
        Case{"FarBytesApart",
             {{{10, "a12345678901234567b"}}},
             {{{10, "X12345678901234567Y"}}},
             "10:X 28:Y "},
        Case{"Moved", {{{10, "abc"}, {20, "de"}}}, {{{10, "abc"}, {15, "de"}}}, "15:de 20:__ "},
        Case{"OntoFill", {{{10, "abc"}}}, {{{10, "abcde"}}}, "13:de "},
        Case{"IntoFill", {{{10, "abcde"}}}, {{{10, "abc"}}}, "13:__ "},
        Case{"FirstByte", {{{0, "abc"}}}, {{{0, "Xbc"}}}, "0:X "}),
    Testing::nameOfCase<Case>);

TEST(Segments, differInWhatMakesOneTheOther) {
    std::mt19937 random(99);
    for (int round = 0; round != 3000; ++round) {
        // A dot is the value of fill: before, it may be anything; afterwards too, but what was not
        // fill is gone.
        const auto make = [&random](const std::string& like) {
            std::string text = like;
            for (char& c : text) {
                if (random() % 8 == 0) {
                    c = "abc."[random() % 4];
                }
            }
            return text;
        };
        const auto segments = [](const std::string& text) {
            Segments result;
            for (std::size_t i = 0; i != text.size(); ++i) {
                if (text[i] != '.') {
                    result.push_back({i, {reinterpret_cast<const Types::u8*>(&text[i]), 1}});
                }
            }
            return result;
        };
        const std::string before = make(std::string(60, "ab."[round % 3]));
        const std::string now = make(before);
        std::string file = before;
        for (const ByteRange& range : differences(segments(before), segments(now))) {
            for (std::size_t i = 0; i != range.bytes.size(); ++i) {
                file[range.offset + i] = static_cast<char>(range.bytes[i]);
            }
        }
        for (std::size_t i = 0; i != now.size(); ++i) {
            EXPECT_EQ(file[i], now[i] != '.' ? now[i] : before[i] == '.' ? '.' : '\0');
        }
    }
}

} // namespace
} // namespace Corvid::mxf
