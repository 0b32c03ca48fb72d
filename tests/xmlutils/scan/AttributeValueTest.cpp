#include "host/xmlutils/scan/AttributeValue.h"

#include <gtest/gtest.h>

namespace Corvid::XMLUtils {
namespace {

struct Case {
    const char* name;
    std::u16string_view written;
    std::u16string_view value;
};
void PrintTo(const Case& value, std::ostream* to) { *to << value.name; }

class ReadsAttributeValues : public ::testing::TestWithParam<Case> {};

TEST_P(ReadsAttributeValues, asAParserDoes) {
    EXPECT_EQ(attributeValue(GetParam().written), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    , ReadsAttributeValues,
    ::testing::Values(Case{"Empty", u"", u""}, Case{"Plain", u"urn:x", u"urn:x"},
                      Case{"WhiteSpace", u"\r\na\tb\nc\r", u" a b c "},
                      Case{"Decimal", u"&#97;&#0098;&#1114111;", u"ab\U0010FFFF"},
                      Case{"Hexadecimal", u"&#x6A;&#x6b;&#x10000;", u"jk\U00010000"},
                      Case{"Predefined", u"&lt;&gt;&amp;&quot;&apos;", u"<>&\"'"},
                      Case{"NotResolvedAgain", u"&#38;lt;&amp;gt;", u"&lt;&gt;"},
                      Case{"WhiteSpaceAsReference", u"&#13;&#10;&#9;", u"\r\n\t"},
                      Case{"NoReferences", u"&;&#;&#x;&x;&#g;&#99999999999;&lt&",
                           u"&;&#;&#x;&x;&#g;&#99999999999;&lt&"}),
    [](const auto& test) { return test.param.name; });

TEST(AttributeValue, tellsWhichAttributesDeclare) {
    for (const auto* name : {u"xmlns", u"xmlns:a", u"xmlns:"}) {
        EXPECT_TRUE(declaresNamespace(name));
    }
    for (const auto* name : {u"", u"xmln", u"xmlnsa", u"a:xmlns", u"Xmlns"}) {
        EXPECT_FALSE(declaresNamespace(name));
    }
}

} // namespace
} // namespace Corvid::XMLUtils
