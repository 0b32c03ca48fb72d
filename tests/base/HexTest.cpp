#include "host/base/Hex.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes everyByte() {
    Bytes bytes;
    for (unsigned byte = 0; byte != 256; ++byte) {
        bytes.push_back(static_cast<unsigned char>(byte));
    }
    return bytes;
}

template <class Text> std::string ascii(const Text& text) { return {text.begin(), text.end()}; }

TEST(Hex, knowsTheValueOfEveryDigit) {
    for (int value = 0; value != 256; ++value) {
        const bool isDigit = std::isxdigit(value) != 0;
        const unsigned expected =
            isDigit ? static_cast<unsigned>(
                          std::stoi(std::string(1, static_cast<char>(value)), nullptr, 16))
                    : Hex::none;
        EXPECT_EQ(Hex::valueOf(static_cast<char>(value)), expected) << value;
        EXPECT_EQ(Hex::valueOf(static_cast<char16_t>(value)), expected) << value;
    }
}

TEST(Hex, takesNoCodeUnitForTheDigitThatItsLowByteIs) {
    for (unsigned unit = 256; unit != 0x10000; ++unit) {
        ASSERT_EQ(Hex::valueOf(static_cast<char16_t>(unit)), Hex::none) << unit;
        ASSERT_EQ(Hex::valueOf(static_cast<unsigned short>(unit)), Hex::none) << unit;
    }
}

TEST(Hex, writesEveryByteInEitherCase) {
    const Bytes bytes = everyByte();
    std::string expected;
    for (const unsigned char byte : bytes) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", byte);
        expected += pair;
    }
    EXPECT_EQ(Hex::encoded<std::string>(bytes.data(), bytes.size(), Hex::lower), expected);
    for (char& digit : expected) {
        digit = static_cast<char>(std::toupper(digit));
    }
    EXPECT_EQ(Hex::encoded<std::string>(bytes.data(), bytes.size(), Hex::upper), expected);
    EXPECT_EQ(ascii(Hex::encoded<std::u16string>(bytes.data(), bytes.size(), Hex::upper)),
              expected);
}

TEST(Hex, readsWhatItWrites) {
    const Bytes bytes = everyByte();
    for (const char* digits : {Hex::lower, Hex::upper}) {
        const auto text = Hex::encoded<std::u16string>(bytes.data(), bytes.size(), digits);
        Bytes read(bytes.size());
        EXPECT_TRUE(Hex::decode(text.data(), read.data(), read.size()));
        EXPECT_EQ(read, bytes);
    }
}

TEST(Hex, refusesPairsWithAnotherCharacter) {
    const struct {
        std::string_view text;
        bool isRead;
    } cases[] = {{"", true},
                 {"0a", true},
                 {"fF00", true},
                 {"0g", false},
                 {"g0", false},
                 {"00/0", false},
                 {"00:0", false},
                 {"@0", false},
                 {"`0", false},
                 {" 0", false},
                 {"-1", false},
                 {"+1", false},
                 {"0x", false},
                 {"\xC1"
                  "1",
                  false}};
    for (const auto& [text, isRead] : cases) {
        Bytes bytes(text.size() / 2);
        EXPECT_EQ(Hex::decode(text.data(), bytes.data(), bytes.size()), isRead) << text;
    }
}

TEST(Hex, readsNothingBeyondTheFirstCharacterThatIsNoDigit) {
    // A terminated text can be read as more bytes than it has: the sanitizers watch its end.
    for (const char* text : {"", "1", "12", "123"}) {
        const std::vector<char> exactly(text, text + std::string_view(text).size() + 1);
        Bytes bytes(8);
        EXPECT_FALSE(Hex::decode(exactly.data(), bytes.data(), bytes.size())) << text;
    }
}

} // namespace
} // namespace Corvid
