#include "XMLBuilder/writer/NamespaceMap.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvid::Testing {
namespace {

using XMLBuilder::NamespaceMap;

std::vector<std::u16string> urisOf(const NamespaceMap& map) {
    std::vector<std::u16string> uris;
    for (const auto& entry : map) {
        uris.push_back(entry.first);
    }
    return uris;
}

TEST(NamespaceMap, beginsWithTheDocumentsNamespace) {
    const NamespaceMap map;
    EXPECT_EQ(urisOf(map), std::vector<std::u16string>{u"urn:SMPTE:S377M"});
    EXPECT_EQ(map.uriOf(u"s377m"), u"urn:SMPTE:S377M");
}

TEST(NamespaceMap, ordersUrisByCodeUnitsAPrefixFirst) {
    NamespaceMap map;
    map.insert(u"urn:b", u"b");
    map.insert(u"urn:\uFFFD", u"z");
    map.insert(u"urn", u"u");
    map.insert(u"urn:\U0001F600", u"y"); // its first code unit is below U+FFFD
    EXPECT_EQ(urisOf(map), (std::vector<std::u16string>{u"urn", u"urn:SMPTE:S377M", u"urn:b",
                                                        u"urn:\U0001F600", u"urn:\uFFFD"}));
}

TEST(NamespaceMap, keepsTheFirstPrefixOfAUri) {
    NamespaceMap map;
    map.insert(u"urn:a", u"first");
    map.insert(u"urn:a", u"second");
    EXPECT_EQ(map.uriOf(u"first"), u"urn:a");
    EXPECT_EQ(map.uriOf(u"second"), u"");
}

TEST(NamespaceMap, findsTheFirstUriOfAPrefix) {
    NamespaceMap map;
    map.insert(u"urn:b", u"p");
    map.insert(u"urn:a", u"p");
    EXPECT_EQ(map.uriOf(u"p"), u"urn:a");
}

} // namespace
} // namespace Corvid::Testing
