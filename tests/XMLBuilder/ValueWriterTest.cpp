#include "XMLBuilder/writer/NamespaceMap.h"
#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/writer/sinks/DomSink.h"
#include "host/xmlutils/Initializer.h"
#include "tests/XMLBuilder/XmlOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using namespace Corvid::Types;
using XMLBuilder::NamespaceMap;
using XMLBuilder::ToXMLBaseTypeVisitor;

xercesc::DOMDocument* newDocument() {
    XMLUtils::Initializer::instance();
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    return implementation->createDocument(nullptr, u"v", nullptr);
}

/// What the value leaves in its element.
std::string contentOf(const DataType& value, std::size_t* nodes = nullptr) {
    const Templates::auto_ptr<xercesc::DOMDocument> document(newDocument());
    NamespaceMap namespaces;
    namespaces.insertValueNamespaces();
    XMLBuilder::DomSink sink(document->getDocumentElement());
    ToXMLBaseTypeVisitor writer(sink);
    value.accept(writer);
    if (nodes != nullptr) {
        *nodes = document->getDocumentElement()->getChildNodes()->getLength();
    }
    for (const auto& [uri, prefix] : namespaces) {
        document->getDocumentElement()->setAttributeNS(xercesc::XMLUni::fgXMLNSURIName,
                                                       (u"xmlns:" + prefix).c_str(), uri.c_str());
    }
    std::string text = toText(document.get(), XMLUtils::Layout::compact);
    text.erase(0, text.find('>') + 1);
    const std::size_t end = text.rfind("</v>");
    return end == std::string::npos ? std::string() : text.substr(0, end);
}

/// Owns a value of any type.
class AnyValue {
public:
    template <class T> AnyValue(const T& value) : value_(new T(value)) {}
    AnyValue(std::shared_ptr<DataType> value) : value_(std::move(value)) {}
    const DataType& operator*() const { return *value_; }

private:
    std::shared_ptr<DataType> value_;
};

struct Case {
    const char* name;
    AnyValue value;
    const char* content;
};

void PrintTo(const Case& c, std::ostream* to) { *to << c.name; }

class WritesValue : public testing::TestWithParam<Case> {};

TEST_P(WritesValue, asContent) { EXPECT_EQ(contentOf(*GetParam().value), GetParam().content); }

std::string nameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.name; }

template <std::size_t Size> std::array<u8, Size> bytesFrom(u8 first) {
    std::array<u8, Size> bytes;
    for (std::size_t i = 0; i != Size; ++i) {
        bytes[i] = static_cast<u8>(first + i);
    }
    return bytes;
}

DataStream stream(std::initializer_list<u8> bytes) {
    return DataStream(bytes.begin(), static_cast<u32>(bytes.size()));
}

RGBALayout layout(std::initializer_list<RGBALayout::RGBAComponent> components) {
    RGBALayout made;
    u32 index = 0;
    for (const auto component : components) {
        made.set(index++, component);
    }
    return made;
}

template <class C, class T> AnyValue collection(int itemSize, std::initializer_list<T> items) {
    auto made = std::make_shared<C>(itemSize);
    for (const T& item : items) {
        made->add(item.clone());
    }
    return AnyValue(std::shared_ptr<DataType>(std::move(made)));
}

const u16 camera[] = {'C', 'a', 'm', 0xE9, ' ', '<', '&', 0};
const u16 nothing[] = {0};
const u8 allBits[] = {0, 1, 0xAB};

INSTANTIATE_TEST_SUITE_P(
    Scalars, WritesValue,
    testing::Values(
        Case{"UInt8AsNumber", UInt8(65), "65"}, Case{"UInt8Greatest", UInt8(255), "255"},
        Case{"Int8Lowest", Int8(-128), "-128"}, Case{"Int8Negative", Int8(-5), "-5"},
        Case{"UInt16Greatest", UInt16(65535), "65535"},
        Case{"Int16Lowest", Int16(-32768), "-32768"},
        Case{"UInt32Greatest", UInt32(4294967295U), "4294967295"},
        Case{"Int32Negative", Int32(-1), "-1"},
        Case{"Int32Lowest", Int32(-2147483647 - 1), "-2147483648"},
        Case{"UInt64Greatest", UInt64(18446744073709551615U), "18446744073709551615"},
        Case{"Int64Lowest", Int64(-9223372036854775807 - 1), "-9223372036854775808"},
        Case{"PositionNegative", Position(-1), "-1"}, Case{"Length", Length(1500), "1500"},
        Case{"OrientationCode", Orientation(4), "4"},
        Case{"SignalStandardCode", SignalStandard(3), "3"}, Case{"BooleanTrue", Boolean(true), "1"},
        Case{"BooleanFalse", Boolean(false), "0"},
        Case{"VersionTypePacked", VersionType(1, 2), "258"},
        Case{"VersionTypeZero", VersionType(0, 0), "0"},
        Case{"VersionTypeGreatest", VersionType(255, 255), "65535"},
        Case{"CodeUnit", UTF16(0x41), "A"},
        Case{"Utf16Text", UTF16String(camera), "Cam\xC3\xA9 &lt;&amp;"},
        Case{"Iso7Text", ISO7String("abc"), "abc"},
        Case{"Iso7Widened", ISO7String("\xE9"), "\xC3\xA9"},
        Case{"Uuid", UUID(bytesFrom<16>(0xF8)), "f8.f9.fa.fb.fc.fd.fe.ff.00.01.02.03.04.05.06.07"},
        Case{"Label", UniversalLabel(bytesFrom<16>(1)),
             "01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10"},
        Case{"Tag", LocalTag(0x3C0A), "3c.0a"},
        Case{"StrongReferenceText", StrongReference(uuid(7)),
             "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07"},
        Case{"WeakReferenceText", WeakReference(uuid(8)),
             "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.08"},
        Case{"Bytes", stream({0, 1, 0xAB}), "0001AB"},
        Case{"DataValueBytes", DataValue(ByteView{allBits, 3}), "0001AB"},
        Case{"UnknownBytes", Unknown(ByteView{allBits, 3}), "0001AB"}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Compounds, WritesValue,
    testing::Values(
        Case{"Rational", Rational(30000, 1001),
             "<types:Numerator>30000</types:Numerator><types:Denominator>1001</types:Denominator>"},
        Case{"RationalNegative", Rational(-1, 2),
             "<types:Numerator>-1</types:Numerator><types:Denominator>2</types:Denominator>"},
        Case{"RationalOfZeros", Rational(0, 0),
             "<types:Numerator>0</types:Numerator><types:Denominator>0</types:Denominator>"},
        Case{"ProductVersion", ProductVersion(1, 2, 65535, 4, ProductVersion::betaVersion),
             "<types:Major>1</types:Major><types:Minor>2</types:Minor><types:Patch>65535</"
             "types:Patch>"
             "<types:Build>4</types:Build><types:Release>4</types:Release>"},
        Case{"ProductVersionOfNineBytes",
             ProductVersion(1, 2, 3, 4, ProductVersion::releasedVersion).inNineBytes(),
             "<types:Major>1</types:Major><types:Minor>2</types:Minor><types:Patch>3</types:Patch>"
             "<types:Build>4</types:Build><types:Release>1</types:Release>"},
        Case{"TimestampUnchecked", Timestamp(2026, 13, 32, 25, 61, 200, 999),
             "<types:Year>2026</types:Year><types:Month>13</types:Month><types:Day>32</types:Day>"
             "<types:Hour>25</types:Hour><types:Minute>61</types:Minute><types:Second>200</"
             "types:Second>"
             "<types:mSec4>249</types:mSec4>"},
        Case{"LayoutOfThree", layout({{'R', 8}, {'G', 8}, {'B', 10}}),
             "<types:RGBAComponent><types:Code>82</types:Code><types:Depth>8</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>71</types:Code><types:Depth>8</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>66</types:Code><types:Depth>10</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>0</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>0</types:Depth></"
             "types:RGBAComponent>"},
        Case{"LayoutEndedAtOnceIsWrittenOn",
             layout({{0, 0}, {'G', 8}, {0, 0}, {0, 0}, {0, 250}, {'X', 1}}),
             "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>0</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>71</types:Code><types:Depth>8</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>0</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>0</types:Depth></"
             "types:RGBAComponent>"
             "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>250</types:Depth></"
             "types:RGBAComponent>"},
        Case{"PictureComponent", J2KPictureComponent(200, 1, 255),
             "<s422mTypes:J2KPictureComponent><s422mTypes:Ssizi>200</s422mTypes:Ssizi>"
             "<s422mTypes:XRSizi>1</s422mTypes:XRSizi><s422mTypes:YRSizi>255</s422mTypes:YRSizi>"
             "</s422mTypes:J2KPictureComponent>"},
        Case{"CodingStyle", J2KCodingStyleDefault(1, 4294967295U, allBits, 3),
             "<s422mTypes:J2KCodingStyleDefault><s422mTypes:Scod>1</s422mTypes:Scod>"
             "<s422mTypes:SGcod>4294967295</s422mTypes:SGcod><s422mTypes:Spcod>0001AB</"
             "s422mTypes:Spcod>"
             "</s422mTypes:J2KCodingStyleDefault>"},
        Case{"CodingStyleWithoutRest", J2KCodingStyleDefault(0, 0, allBits, 0),
             "<s422mTypes:J2KCodingStyleDefault><s422mTypes:Scod>0</s422mTypes:Scod>"
             "<s422mTypes:SGcod>0</s422mTypes:SGcod><s422mTypes:Spcod></s422mTypes:Spcod>"
             "</s422mTypes:J2KCodingStyleDefault>"},
        Case{"Quantisation", J2KQuantisationDefault(34, allBits, 3),
             "<s422mTypes:J2KQuantisationDefault><s422mTypes:Sqcd>34</s422mTypes:Sqcd>"
             "<s422mTypes:SPgcd>0001AB</s422mTypes:SPgcd></s422mTypes:J2KQuantisationDefault>"}),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    WholeCollections, WritesValue,
    testing::Values(
        Case{"ScalarsRunTogether", collection<Array>(1, {UInt8(1), UInt8(2)}), "12"},
        Case{"CompoundsRunTogether", collection<Batch>(8, {Rational(1, 2), Rational(3, 4)}),
             "<types:Numerator>1</types:Numerator><types:Denominator>2</types:Denominator>"
             "<types:Numerator>3</types:Numerator><types:Denominator>4</types:Denominator>"}),
    nameOfCase);

std::string milliSeconds(u16 value) {
    const std::string content = contentOf(Timestamp(0, 0, 0, 0, 0, 0, value));
    const std::size_t begin = content.find("<types:mSec4>") + 13;
    return content.substr(begin, content.find('<', begin) - begin);
}

TEST(ValueWriter, writesMillisecondsInStepsOfFourRoundedDown) {
    EXPECT_EQ(milliSeconds(0), "0");
    EXPECT_EQ(milliSeconds(1), "0");
    EXPECT_EQ(milliSeconds(3), "0");
    EXPECT_EQ(milliSeconds(4), "1");
    EXPECT_EQ(milliSeconds(999), "249");
    EXPECT_EQ(milliSeconds(1000), "250");
    EXPECT_EQ(milliSeconds(65535), "16383");
}

TEST(ValueWriter, leavesOneEmptyTextNodeForEmptyTextAndNoBytes) {
    std::size_t nodes = 0;
    EXPECT_EQ(contentOf(UTF16String(nothing), &nodes), "");
    EXPECT_EQ(nodes, 1U);
    EXPECT_EQ(contentOf(stream({}), &nodes), "");
    EXPECT_EQ(nodes, 1U);
}

TEST(ValueWriter, writesEveryByteOfWhatIsTooLongForAProperty) {
    const Templates::vector<u8> bytes(70000);
    EXPECT_EQ(contentOf(DataStream(bytes.data(), 70000)).size(), 140000U);
}

TEST(ValueWriter, leavesNothingForAnEmptyCollection) {
    std::size_t nodes = 99;
    contentOf(Array(1), &nodes);
    EXPECT_EQ(nodes, 0U);
}

TEST(ValueWriter, setsAnAttributeForUuidsAndReferences) {
    std::u16string attribute;
    ToXMLBaseTypeVisitor writer(attribute);
    uuid(5).accept(writer);
    EXPECT_EQ(Platform::toUtf8(XMLUtils::fromXml(attribute.c_str())), uuidText(5));
    WeakReference(uuid(6)).accept(writer);
    EXPECT_EQ(Platform::toUtf8(XMLUtils::fromXml(attribute.c_str())), uuidText(6));
}

TEST(ValueWriter, writesNothingToAnAttributeForAnyOtherValue) {
    std::u16string attribute;
    const std::vector<AnyValue> values{UInt8(7),
                                       Int64(-1),
                                       Boolean(true),
                                       VersionType(1, 2),
                                       UTF16('a'),
                                       ISO7String("a"),
                                       UTF16String(Platform::fromUtf8("a").c_str()),
                                       UniversalLabel(std::array<u8, 16>{1}),
                                       UMID32(std::array<u8, 32>{1}),
                                       LocalTag(u16{0x3C0A}),
                                       stream({1}),
                                       Rational(1, 2),
                                       Timestamp(2026, 1, 2, 3, 4, 5, 8),
                                       RGBALayout(),
                                       J2KPictureComponent(7, 1, 1)};
    for (const AnyValue& value : values) {
        ToXMLBaseTypeVisitor writer(attribute);
        (*value).accept(writer);
        EXPECT_EQ(attribute, u"");
    }
    Array identifiers(16);
    identifiers.add(uuid(5).clone());
    ToXMLBaseTypeVisitor writer(attribute);
    identifiers.accept(writer);
    EXPECT_EQ(attribute, u"");
}

TEST(ValueWriter, leavesAPrefixInUseBoundToItsUri) {
    NamespaceMap namespaces;
    namespaces.insert(u"urn:other", u"types");
    namespaces.insertValueNamespaces();
    EXPECT_EQ(namespaces.uriOf(u"types"), u"urn:other");
    EXPECT_EQ(std::distance(namespaces.begin(), namespaces.end()), 3); // with s377m and s422mTypes
}

} // namespace
} // namespace Corvid::Testing
