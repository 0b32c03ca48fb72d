#include "host/xmlutils/SchemaValidator.h"

#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "host/xmlutils/XmlText.h"

#include <gtest/gtest.h>
#include <xercesc/sax/SAXParseException.hpp>

namespace Corvid::Testing {
namespace {

using XMLUtils::SchemaText;
using XMLUtils::SchemaValidator;
using XMLUtils::ValidityError;

/// Two namespaces that import each other, as those of documents do.
std::vector<SchemaText> schemas() {
    return {{"a.xsd",
             R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:b="urn:b"
                    targetNamespace="urn:a" elementFormDefault="qualified">
                  <xs:import namespace="urn:b" schemaLocation="b.xsd"/>
                  <xs:element name="root"><xs:complexType><xs:sequence>
                    <xs:element ref="b:number" maxOccurs="unbounded"/>
                  </xs:sequence></xs:complexType></xs:element>
                  <xs:attribute name="name" type="xs:token"/>
                </xs:schema>)"},
            {"b.xsd",
             R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:a="urn:a"
                    targetNamespace="urn:b" elementFormDefault="qualified">
                  <xs:import namespace="urn:a" schemaLocation="a.xsd"/>
                  <xs:element name="number"><xs:complexType><xs:simpleContent>
                    <xs:extension base="xs:unsignedByte">
                      <xs:attribute ref="a:name" use="required"/>
                    </xs:extension>
                  </xs:simpleContent></xs:complexType></xs:element>
                </xs:schema>)"}};
}

std::vector<ValidityError> errorsOf(const std::string& text, std::size_t most = 10) {
    return SchemaValidator(schemas()).validate(reinterpret_cast<const unsigned char*>(text.data()),
                                               text.size(), most);
}

std::string inRoot(const std::string& content) {
    return "<a:root xmlns:a='urn:a' xmlns:b='urn:b'>\n" + content + "\n</a:root>";
}

struct Case {
    const char* name;
    std::string text;
    unsigned long long line;
    const char* told; ///< in the message of the first error
};

class SchemaValidatorFinds : public testing::TestWithParam<Case> {};

TEST_P(SchemaValidatorFinds, whatTheSchemaDoesNotAllow) {
    const auto errors = errorsOf(GetParam().text);
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors.front().line, GetParam().line) << errors.front().describe();
    EXPECT_NE(errors.front().describe().find(GetParam().told), std::string::npos)
        << errors.front().describe();
}

INSTANTIATE_TEST_SUITE_P(
    , SchemaValidatorFinds,
    testing::Values(
        Case{"UnknownElement", inRoot("<b:nmber a:name='x'>1</b:nmber>"), 2, "b:nmber"},
        Case{"WrongType", inRoot("\n<b:number a:name='x'>256</b:number>"), 3, "256"},
        Case{"MissingAttribute", inRoot("<b:number>1</b:number>"), 2, "name"},
        Case{"ElementThatMustNotBeThere",
             inRoot("<b:number a:name='x'>1</b:number>\n<a:root><b:number a:name='y'>1</b:number>"
                    "</a:root>\n<b:number a:name='z'>1</b:number>"),
             3, "'root' is not allowed"},
        Case{"MissingElement", inRoot(""), 3, "number"}, Case{"ForeignRoot", "<root/>", 1, "root"},
        Case{"WhatADocumentNamesItself",
             "<root xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
             "xsi:noNamespaceSchemaLocation='/dev/zero'/>",
             1, "root"}),
    [](const auto& which) { return which.param.name; });

TEST(SchemaValidator, findsNothingInAValidDocument) {
    const std::string valid = inRoot("<b:number a:name='x'>255</b:number>");
    EXPECT_TRUE(errorsOf(valid).empty());
    std::string utf16;
    for (const char c : valid) {
        utf16 += {c, '\0'};
    }
    EXPECT_TRUE(errorsOf(utf16).empty());
}

TEST(SchemaValidator, servesMoreThanOneDocument) {
    const SchemaValidator validator(schemas());
    for (const char* number : {"1", "x", "2", "y"}) {
        const std::string text =
            inRoot(std::string("<b:number a:name='x'>") + number + "</b:number>");
        const auto errors = validator.validate(reinterpret_cast<const unsigned char*>(text.data()),
                                               text.size(), 10);
        EXPECT_EQ(errors.empty(), *number < 'a') << number;
    }
}

TEST(SchemaValidator, endsWhenEnoughIsFound) {
    const std::string many = inRoot("<b:number/><b:number/><b:number/>");
    EXPECT_EQ(errorsOf(many, 2).size(), 2U);
    EXPECT_GE(errorsOf(many, 100).size(), 3U);
}

TEST(SchemaValidator, refusesADocumentThatIsNotWellFormed) {
    EXPECT_THROW(errorsOf(inRoot("<b:number>")), xercesc::SAXParseException);
    EXPECT_THROW(errorsOf(""), xercesc::SAXParseException);
}

TEST(SchemaValidator, refusesWhatIsBeyondTheLimitsOfDocuments) {
    const auto refusal = [](const std::string& text) {
        try {
            errorsOf(text, 1000000);
        } catch (const xercesc::SAXParseException& e) {
            return Platform::toUtf8(XMLUtils::fromXml(e.getMessage()));
        }
        return std::string("none");
    };
    std::string deep, attributes, names;
    for (int i = 0; i != 1000000; ++i) {
        deep += "<a>";
    }
    for (int i = 0; i != 1025; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    for (int i = 0; i != 16384; ++i) {
        names += "<a" + std::to_string(i) + "/>";
    }
    EXPECT_EQ(refusal(deep), "line 1, column 12292: element a is 4097 deep, expected at most 4096");
    EXPECT_EQ(
        refusal("<a" + attributes + "/>"),
        "line 1, column 8115: element a and those around it have 1025 attributes, expected at "
        "most 1024");
    EXPECT_EQ(refusal("<a>" + names + "</a>"),
              "line 1, column 136350: element a16383: 16385 different names of elements and "
              "attributes so far, expected at most 16384");
}

TEST(SchemaValidator, refusesADocumentTypeBeforeItsEntities) {
    try {
        errorsOf("<!DOCTYPE r [<!ENTITY e SYSTEM '/etc/hostname'>]>\n<r>&e;</r>");
        FAIL();
    } catch (const xercesc::SAXParseException& refused) {
        EXPECT_NE(Platform::toUtf8(XMLUtils::fromXml(refused.getMessage())).find("document type"),
                  std::string::npos);
    }
}

TEST(SchemaValidator, refusesSchemasThatAreNone) {
    auto broken = schemas();
    broken[1].text = "<xs:schema";
    EXPECT_THROW(SchemaValidator{broken}, Exceptions::InvalidFormat);
    auto incomplete = schemas();
    incomplete.pop_back();
    try {
        SchemaValidator{incomplete};
        FAIL();
    } catch (const Exceptions::InvalidFormat& refused) {
        EXPECT_NE(Platform::toUtf8(refused.message()).find("b.xsd"), std::string::npos);
    }
}

} // namespace
} // namespace Corvid::Testing
