#include "host/xmlutils/UnicodeString.h"
#include "host/xmlutils/XmlText.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

TEST(UnicodeString, widensEightBitTextAsLatin1) {
    const UnicodeString text("a\xE9\xFF");
    EXPECT_EQ(text.size(), 3u);
    EXPECT_EQ(text.utf16Size(), 6u);
    EXPECT_EQ(text.utf16()[0], 'a');
    EXPECT_EQ(text.utf16()[1], 0xE9);
    EXPECT_EQ(text.utf16()[2], 0xFF);
    EXPECT_EQ(text.utf16()[3], 0);
}

TEST(UnicodeString, keepsUtf16AsItIs) {
    const Utf16Unit units[] = {0xD83D, 0xDE00, 0xFFFE, 0};
    const UnicodeString text(units);
    EXPECT_EQ(text.size(), 3u);
    EXPECT_EQ(text.text(), Utf16Text(units, 3));
}

TEST(UnicodeString, takesNullForEmptyText) {
    EXPECT_EQ(UnicodeString(static_cast<const char*>(nullptr)).size(), 0u);
    EXPECT_EQ(UnicodeString(static_cast<const Utf16Unit*>(nullptr)).size(), 0u);
    EXPECT_EQ(*UnicodeString().utf16(), 0);
}

TEST(UnicodeString, endsAtTheFirstZero) {
    const Utf16Unit units[] = {'a', 0, 'b'};
    EXPECT_EQ(UnicodeString(Utf16Text(units, 3)).size(), 1u);
}

TEST(UnicodeString, comparesByContent) {
    EXPECT_TRUE(UnicodeString("Core") == UnicodeString(Platform::widen("Core")));
    EXPECT_TRUE(UnicodeString("Core") != UnicodeString("core"));
}

TEST(Utf16ToWstring, replacesWhatStoodThere) {
    Utf16Text text = Platform::widen("before");
    utf16ToWstring(UnicodeString("x").utf16(), text);
    EXPECT_EQ(text, Platform::widen("x"));
    utf16ToWstring(nullptr, text);
    EXPECT_TRUE(text.empty());
}

TEST(XmlText, givesTheSameTextToEitherSide) {
    const UnicodeString text("Core");
    const char16_t* const xml = toXml(text.utf16());
    EXPECT_EQ(std::basic_string_view<char16_t>(xml), u"Core");
    EXPECT_EQ(fromXml(xml), text.utf16());
    EXPECT_EQ(toXml(static_cast<const Utf16Unit*>(nullptr)), nullptr);
    EXPECT_EQ(fromXml(nullptr), nullptr);
}

} // namespace
} // namespace Corvid::XMLUtils
