#include "host/dictionary/DictionaryLimits.h"

#include "tests/dictionary/DictionarySupport.h"

#include <gmock/gmock.h>

#include <cstdio>

namespace Corvid::Testing {
namespace {

using namespace MetaMetadata;

/// A label or key with a number of its own.
std::string numbered(const char* front, unsigned number) {
    char bytes[16];
    std::snprintf(bytes, sizeof bytes, ".%02x.%02x.%02x.00", number >> 16, number >> 8 & 0xFFU,
                  number & 0xFFU);
    return front + std::string(bytes);
}
std::string keyOf(unsigned number) {
    return numbered("06.0e.2b.34.02.53.01.01.0e.7f.02.00", number);
}
std::string labelOf(unsigned number) {
    return numbered("06.0e.2b.34.01.01.01.01.0e.7f.03.00", number);
}

std::string setRow(const std::string& name, unsigned number, const std::string& parent = "x:Base") {
    return "set " + name + " " + keyOf(number) + " " + parent + " abstract\n";
}
std::string propertyRow(const std::string& name, unsigned number) {
    return "property " + name + " " + labelOf(number) + " - UInt8 optional -\n";
}

constexpr char head[] = "namespace x urn:x\n";

/// A set with so many properties, from which so many others inherit.
std::string family(std::size_t properties, std::size_t heirs) {
    std::string text = head + setRow("x:Base", 0, "-");
    for (unsigned i = 0; i != properties; ++i) {
        text += propertyRow("x:P" + std::to_string(i), i);
    }
    for (unsigned i = 0; i != heirs; ++i) {
        text += setRow("x:S" + std::to_string(i), i + 1);
    }
    return text;
}

std::string refusalOfText(const std::string& text) {
    OwnedTexts texts;
    texts.add("big.dict", text);
    try {
        Dictionary::fromTexts(texts.texts());
    } catch (const Exceptions::InvalidDictionary& error) {
        return Platform::toUtf8(error.message());
    }
    return "";
}

struct Case {
    const char* name;
    std::string (*text)(std::size_t beyond); ///< what is as great as allowed, and so much greater
    const char* reason;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class DictionaryLimit : public ::testing::TestWithParam<Case> {};

TEST_P(DictionaryLimit, areReachedButNotPassed) {
    EXPECT_EQ(refusalOfText(GetParam().text(0)), "");
    EXPECT_THAT(refusalOfText(GetParam().text(1)),
                ::testing::AllOf(::testing::StartsWith("big.dict:"),
                                 ::testing::HasSubstr(GetParam().reason)));
}

INSTANTIATE_TEST_SUITE_P(
    , DictionaryLimit,
    ::testing::Values(
        Case{"NameOfASet",
             [](std::size_t beyond) {
                 return head + setRow("x:" + std::string(longestName + beyond, 'n'), 0, "-");
             },
             "has 257 characters, expected at most 256"},
        Case{"NameOfAProperty",
             [](std::size_t beyond) {
                 return head + setRow("x:S", 0, "-") +
                        propertyRow("x:" + std::string(longestName + beyond, 'n'), 0);
             },
             "has 257 characters, expected at most 256"},
        Case{"Prefix",
             [](std::size_t beyond) {
                 return "namespace " + std::string(longestName + beyond, 'p') + " urn:x\n";
             },
             "prefix \"ppp"},
        Case{"Uri",
             [](std::size_t beyond) {
                 return "namespace x urn:" + std::string(longestUri + beyond - 4, 'u') + "\n";
             },
             "has 1025 characters, expected at most 1024"},
        Case{"Namespaces",
             [](std::size_t beyond) {
                 std::string text;
                 for (std::size_t i = 0; i != mostNamespaces + beyond; ++i) {
                     text += "namespace n" + std::to_string(i) + " urn:" + std::to_string(i) + "\n";
                 }
                 return text;
             },
             "namespace n512: expected at most 512 namespaces"},
        Case{"PropertiesOfASet",
             [](std::size_t beyond) { return family(mostProperties + beyond, 0); },
             "set x:Base has 513 properties with those of its ancestors, expected at most 512"},
        Case{"PropertiesOfAllSets",
             [](std::size_t beyond) {
                 return family(256, mostPropertiesOfAllSets / 256 - 1 + beyond);
             },
             "all sets have more than 65536 properties together with those of their ancestors"}),
    [](const auto& each) { return each.param.name; });

TEST(DictionaryLimits, leaveRoomAboveTheDictionaryOfTheLibrary) {
    const auto dictionary = Dictionary::builtIn();
    std::size_t all = 0;
    for (auto set = dictionary->metaMetadataSetBegin(); set != dictionary->metaMetadataSetEnd();
         ++set) {
        EXPECT_LT(4 * (*set)->attributes().size(), mostProperties) << nameOf(**set);
        EXPECT_LT(4 * textOf(**set, "XMLTagName").size(), longestName);
        all += (*set)->attributes().size();
    }
    EXPECT_LT(4 * all, mostPropertiesOfAllSets);
}

TEST(DictionaryLimits, keepMessagesShort) {
    const std::string refusal = refusalOfText("set " + std::string(100000, 'n'));
    EXPECT_LT(refusal.size(), 200U);
    EXPECT_LT(refusalOfText(head + ("use x:" + std::string(100000, 'n') + " optional")).size(),
              300U);
}

} // namespace
} // namespace Corvid::Testing
