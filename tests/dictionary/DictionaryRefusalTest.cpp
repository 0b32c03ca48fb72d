#include "host/dictionary/Dictionary.h"

#include "tests/dictionary/DictionarySupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

// Every case starts with four sound rows, so the row at fault is the fifth, or a later one.
constexpr char head[] = "namespace s377m urn:SMPTE:S377M\n"
                        "namespace rp210 urn:SMPTE:RP210\n"
                        "namespace x urn:x\n"
                        "set x:Sound 06.0e.2b.34.02.53.01.01.0f.00.00.00.00.00.00.01 "
                        "s377m:DescriptiveObject concrete\n";

struct Case {
    const char* name;
    const char* rows;
    int line;
    const char* reason;
};

class RefusesDictionary : public ::testing::TestWithParam<Case> {};

} // namespace

TEST_P(RefusesDictionary, tellingWhereAndWhy) {
    OwnedTexts texts;
    texts.add("bad.dict", std::string(head) + GetParam().rows);
    EXPECT_THAT(refusalOf(texts),
                ::testing::AllOf(
                    ::testing::StartsWith("bad.dict:" + std::to_string(GetParam().line) + ": "),
                    ::testing::HasSubstr(GetParam().reason)));
}

#define KEY "06.0e.2b.34.02.53.01.01.0f.00.00.00.00.00.00.02"
#define LABEL "06.0e.2b.34.01.01.01.01.0f.00.00.00.00.00.00.02"

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    , RefusesDictionary,
    ::testing::Values(
        Case{"UnknownRowKind", "sets x:A " KEY " - concrete", 5, "\"sets\" is no kind of row"},
        Case{"TooFewColumns", "set x:A " KEY " -", 5, "a set row has 5 columns, found 4"},
        Case{"TooManyColumns", "use rp210:PackageName optional more", 5, "has 3 columns, found 4"},
        Case{"ColumnsCutByComment", "use rp210:PackageName #optional", 5, "has 3 columns, found 2"},
        Case{"ShortKey", "set x:A 06.0e.2b.34 - concrete", 5, "is not 16 bytes in hexadecimal"},
        Case{"KeyWithStrayDigit",
             "set x:A 06.0e.2b.34.02.53.01.01.0f.00.00.00.00.00.0g.02 - concrete",
             5, "is not 16 bytes"},
        Case{"KeyWithOtherSeparator",
             "set x:A 06-0e.2b.34.02.53.01.01.0f.00.00.00.00.00.00.02 - concrete",
             5, "is not 16 bytes"},
        Case{"KeyOfAnotherCoding",
             "set x:A 06.0e.2b.34.02.13.01.01.0f.00.00.00.00.00.00.02 - concrete",
             5, "not the key of a local set"},
        Case{"KeyOfAnElement", "set x:A " LABEL " - concrete", 5, "not the key of a local set"},
        Case{"BadLabel",
             "property x:p 06.0e.2b.34.01.01.01.01.0f.00.00.00.00.00.00 - UInt8 optional -",
             5, "is not 16 bytes"},
        Case{"NeitherConcreteNorAbstract",
             "set x:A " KEY " - real",
             5, "\"real\" is neither concrete nor abstract"},
        Case{"DuplicateKey",
             "set x:A 06.0e.2b.34.02.53.01.05.0f.00.00.00.00.00.00.01 s377m:DescriptiveObject concrete",
             5,
             "set x:A: its key is taken already by x:Sound in bad.dict:4"},
        Case{"KeyOfTheBase",
             "set x:A 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00 s377m:DescriptiveObject concrete",
             5,
             "set x:A: its key is taken already by s377m:Preface in the dictionary that is extended"},
        Case{"DuplicateSetTag", "set x:Preface " KEY " s377m:DescriptiveObject concrete", 5,
             "set x:Preface: its tag name is taken already by s377m:Preface in the dictionary that is extended"},
        Case{"DuplicateLabel",
             "property x:p 06.0e.2b.34.01.01.01.09.01.01.15.02.00.00.00.00 - UUID optional -",
             5,
             "property x:p: its label is taken already by rp210:InstanceUID in the dictionary that is extended"},
        Case{"DuplicatePropertyName", "property rp210:PackageName " LABEL " - UInt8 optional -", 5,
             "property rp210:PackageName: its name is taken already by rp210:PackageName"},
        Case{"DuplicateStaticTag", "property x:p " LABEL " 3c.0a UInt8 optional -", 5,
             "property x:p: its local tag is taken already by rp210:InstanceUID"},
        Case{"DuplicateSchemaIndex",
             "property x:p " LABEL " - UInt8 optional 1",
             5, "property x:p: its SchemaIndex is taken already by rp210:"},
        Case{"DynamicTag",
             "property x:p " LABEL " 80.00 UInt8 optional -",
             5, "\"80.00\" is not a static local tag"},
        Case{"TagZero",
             "property x:p " LABEL " 00.00 UInt8 optional -",
             5, "is not a static local tag"},
        Case{"TagWithoutStop",
             "property x:p " LABEL " 3c0a UInt8 optional -",
             5, "is not a static local tag"},
        Case{"UnknownType",
             "property x:p " LABEL " - UInt24 optional -",
             5, "\"UInt24\" is not a value type"},
        Case{"TypeInOtherCase",
             "property x:p " LABEL " - uint8 optional -",
             5, "is not a value type"},
        Case{"CollectionWithoutItems",
             "property x:p " LABEL " - Array optional -",
             5, "is not a value type"},
        Case{"ItemsWithoutCollection",
             "property x:p " LABEL " - UInt8(UInt8) optional -",
             5, "is not a value type"},
        Case{"CollectionOfCollections",
             "property x:p " LABEL " - Array(Batch) optional -",
             5, "is not a value type"},
        Case{"CollectionUnclosed",
             "property x:p " LABEL " - Array(UInt8 optional -",
             5, "is not a value type"},
        Case{"TypeThatCannotBeReadBack",
             "property x:p " LABEL " - DataValue optional -",
             5, "is not a value type"},
        Case{"InstanceUIDOfAnotherPrefix", "property x:InstanceUID " LABEL " - UUID optional -", 5,
             "property x:InstanceUID: the name InstanceUID belongs to rp210:InstanceUID"},
        Case{"GenerationUIDOfAnotherPrefix", "property x:GenerationUID " LABEL " - UInt8 optional -", 5,
             "property x:GenerationUID: the name GenerationUID belongs to rp210:GenerationUID"},
        Case{"InstanceUIDOfAnotherType", "property rp210:InstanceUID " LABEL " - UInt8 optional -", 5,
             "property rp210:InstanceUID has the type UInt8, expected UUID"},
        Case{"GenerationUIDOfManyValues", "property rp210:GenerationUID " LABEL " - Array(UUID) optional -", 5,
             "property rp210:GenerationUID has the type Array(UUID), expected UUID"},
        Case{"GenerationUIDThatRefers", "property rp210:GenerationUID " LABEL " - WeakReference optional -", 5,
             "property rp210:GenerationUID has the type WeakReference, expected UUID"},
        Case{"UnknownStatus",
             "property x:p " LABEL " - UInt8 maybe -",
             5, "\"maybe\" is not a status"},
        Case{"SchemaIndexZero",
             "property x:p " LABEL " - UInt8 optional 0",
             5, "\"0\" is not a number or -"},
        Case{"SchemaIndexTooLarge",
             "property x:p " LABEL " - UInt8 optional 4294967296",
             5, "is not a number or -"},
        Case{"SchemaIndexWithTail",
             "property x:p " LABEL " - UInt8 optional 99999x",
             5, "is not a number or -"},
        Case{"NameStartsWithDigit",
             "set x:3D " KEY " - concrete",
             5, "\"x:3D\" is not a prefix and a name"},
        Case{"NameWithTwoColons", "set x:a:b " KEY " - concrete", 5, "is not a prefix and a name"},
        Case{"NameWithoutPrefix", "set A " KEY " - concrete", 5, "is not a prefix and a name"},
        Case{"EmptyName", "set x: " KEY " - concrete", 5, "is not a prefix and a name"},
        Case{"NameBeyondAscii",
             "set x:\xC3\x89t\xC3\xA9 " KEY " - concrete",
             5, "is not a prefix and a name"},
        Case{"NameOfAReference", "property x:a_REFb " LABEL " - UInt8 optional -", 5, "holds _REF"},
        Case{"MissingNamespace",
             "set y:A " KEY " - concrete",
             5, "prefix \"y\" has no namespace row above"},
        Case{"NamespaceBelow",
             "set y:A " KEY " - concrete\nnamespace y urn:y",
             5, "has no namespace row above"},
        Case{"PrefixWithTwoUris",
             "namespace x urn:z",
             5, "prefix x for urn:z contradicts prefix x for urn:x in bad.dict:3"},
        Case{"UriWithTwoPrefixes",
             "namespace z urn:x",
             5, "prefix z for urn:x contradicts prefix x for urn:x in bad.dict:3"},
        Case{"PrefixOfTheBase",
             "namespace ebucore urn:z",
             5, "contradicts prefix ebucore for urn:EBU:EBUCore:Groups in the dictionary that is extended"},
        Case{"ReservedPrefix", "namespace groups urn:z", 5, "are reserved"},
        Case{"ReservedUri", "namespace z urn:SMPTE:Types:MXF", 5, "are reserved"},
        Case{"BadUri", "namespace z nothing", 5, "\"nothing\" is not a URI"},
        Case{"UriWithMarkup", "namespace z urn:<z>", 5, "is not a URI"},
        Case{"BadPrefix", "namespace 1 urn:z", 5, "\"1\" is not a name"},
        Case{"MissingAncestor",
             "set x:A " KEY " x:Nobody concrete",
             5, "set x:A inherits from x:Nobody, which is not defined"},
        Case{"AncestorUnderOtherPrefix",
             "set x:A " KEY " x:Preface concrete",
             5, "inherits from x:Preface, which is not defined"},
        Case{"OwnAncestor", "set x:A " KEY " x:A concrete", 5, "set x:A is its own ancestor"},
        Case{"CycleOfAncestors", "set x:A " KEY " x:B concrete\n"
             "set x:B 06.0e.2b.34.02.53.01.01.0f.00.00.00.00.00.00.03 x:A concrete", 5, "by way of x:B (bad.dict:6)"},
        Case{"MissingProperty",
             "use rp210:Nothing optional",
             5, "property rp210:Nothing is not defined"},
        Case{"PropertyTwice", "use rp210:PackageName optional\nuse rp210:PackageName required", 6,
             "set x:Sound has property rp210:PackageName twice, the other time from bad.dict:5"},
        Case{"PropertyOfAnAncestor",
             "use rp210:InstanceUID optional",
             5, "twice, the other time from the dictionary that is extended"},
        Case{"PropertyOfADescendant",
             "extend s377m:InterchangeObject\nuse rp210:PackageName optional",
             6, "has property rp210:PackageName twice"},
        Case{"ExtensionOfNothing", "extend x:Nobody", 5, "set x:Nobody to extend is not defined"},
        Case{"NoInstanceUID",
             "set x:A " KEY " - concrete",
             5, "concrete set x:A has no InstanceUID"}),
    [](const auto& test) { return std::string(test.param.name); });
// clang-format on

TEST(DictionaryRefusal, propertyOutsideASet) {
    OwnedTexts texts;
    texts.add("bad.dict", "namespace x urn:x\nproperty x:p " LABEL " - UInt8 optional -\n");
    EXPECT_EQ(refusalOf(texts), "bad.dict:2: no set or extend row comes before it");
}

TEST(DictionaryRefusal, conflictBetweenTexts) {
    OwnedTexts texts;
    texts.add("a.dict", "\n\nnamespace x urn:x\n");
    texts.add("b.dict", "# comment\nnamespace x urn:y\n");
    EXPECT_EQ(refusalOf(texts),
              "b.dict:2: prefix x for urn:y contradicts prefix x for urn:x in a.dict:3");
}

TEST(DictionaryRefusal, namespaceOfAnotherText) {
    OwnedTexts texts;
    texts.add("a.dict", "namespace x urn:x\n");
    texts.add("b.dict", "set x:A " KEY " - abstract\n");
    EXPECT_EQ(refusalOf(texts), "b.dict:1: prefix \"x\" has no namespace row above");
}

TEST(DictionaryRefusal, inheritanceThatIsTooDeep) {
    const auto chain = [](int length) {
        std::string text = "namespace x urn:x\nset x:S0 " KEY " - abstract\n";
        for (int i = 1; i <= length; ++i) {
            char bytes[9];
            std::snprintf(bytes, sizeof bytes, "%02x", static_cast<unsigned>(i));
            text += "set x:S" + std::to_string(i) +
                    " 06.0e.2b.34.02.53.01.01.0f.01.00.00.00.00.00." + bytes + " x:S" +
                    std::to_string(i - 1) + " abstract\n";
        }
        OwnedTexts texts;
        texts.add("deep.dict", text);
        return refusalOf(texts);
    };
    EXPECT_EQ(chain(64), "");
    EXPECT_EQ(chain(65), "deep.dict:67: set x:S65 has more than 64 ancestors");
}

TEST(DictionaryRefusal, identifiersOfAnotherTypeInADictionaryOfItsOwn) {
    OwnedTexts texts;
    texts.add("own.dict",
              "namespace rp210 urn:SMPTE:RP210\n"
              "set rp210:A " KEY " - concrete\n"
              "property rp210:InstanceUID "
              "06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00 3c.0a UMID32 required 1\n");
    try {
        Dictionary::fromTexts(texts.texts());
        FAIL() << "accepted";
    } catch (const Exceptions::InvalidDictionary& e) {
        EXPECT_EQ(Platform::toUtf8(e.message()),
                  "own.dict:3: property rp210:InstanceUID has the type UMID32, expected UUID");
    }
}

TEST(DictionaryRefusal, everyCutThroughALine) {
    const std::string row = "property x:p " LABEL " - UInt8 optional -";
    for (std::size_t length = 1; length != row.size(); ++length) {
        OwnedTexts texts;
        texts.add("cut.dict", head + row.substr(0, length));
        EXPECT_NE(refusalOf(texts), "") << row.substr(0, length);
    }
}

} // namespace Corvid::Testing
