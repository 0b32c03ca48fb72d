#include "XMLBuilder/json/MetadataJson.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/mxf/File.h"
#include "tests/XMLBuilder/JsonComparison.h"
#include "tests/XMLBuilder/RandomModel.h"
#include "tests/XMLBuilder/XmlOf.h"
#include "tests/support/MxfBuilder.h"
#include "tests/support/Paths.h"
#include "tests/support/RichModel.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>
#include <sstream>

namespace Corvid::Testing {
namespace {

using XMLBuilder::DocumentPlan;
using Json = nlohmann::ordered_json;
using ::testing::HasSubstr;

std::string jsonOf(const DocumentPlan& plan, const XMLBuilder::JsonContent& content = {}) {
    DataIO::Memory::MemoryDataSink sink;
    writeJson(plan, content, sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

constexpr DocumentPlan::Manner manners[] = {
    {false, false}, {false, true}, {true, false}, {true, true}};

/// @return the first difference of what a document and JSON say of a partition; empty for none.
std::string differenceIn(Metadata::PartitionMetadata& partition,
                         const Metadata::MetadataSet& start) {
    for (const DocumentPlan::Manner manner : manners) {
        const auto document = XMLBuilder::partition2XML(
            &partition, &start, manner.referencesAsValues, manner.skipNonStructural);
        const std::string json = jsonOf(DocumentPlan(partition, start, manner));
        const std::string difference = differenceOf(*document, json, manner.referencesAsValues);
        if (!difference.empty()) {
            return difference + ", values " + std::to_string(manner.referencesAsValues) +
                   ", structural " + std::to_string(manner.skipNonStructural) + "\n" + json;
        }
    }
    return "";
}

/// A value and what JSON has for it.
struct Form {
    const char* name;
    const char* property;
    Bytes bytes;
    const char* json;
};
void PrintTo(const Form& form, std::ostream* out) { *out << form.name; }

class JsonForms : public ::testing::TestWithParam<Form> {};

/// JSON of a thing with one value.
Json thingWith(const Form& form) {
    Model model = Model::extendedBy(RandomModel::things());
    auto& thing = model.set("Thing", 1);
    const Types::ByteView bytes{form.bytes.data(), form.bytes.size()};
    if (!model.element(thing, form.property).parse(bytes)) {
        throw std::invalid_argument("the bytes do not fit");
    }
    return Json::parse(jsonOf(DocumentPlan(model.partition, thing, {})))["sets"][0]["properties"];
}

TEST_P(JsonForms, holdTheValue) {
    const Json properties = thingWith(GetParam());
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties[GetParam().property], Json::parse(GetParam().json)) << properties;
}

Bytes bytesOf(std::initializer_list<int> numbers) {
    Bytes bytes;
    for (const int number : numbers) {
        bytes.push_back(static_cast<unsigned char>(number));
    }
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    , JsonForms,
    ::testing::Values(
        Form{"Number", "Int16", bytesOf({0xFF, 0xFE}), "-2"},
        Form{"ExactNumber", "UInt64", bytesOf({0, 0x20, 0, 0, 0, 0, 0, 0}), "9007199254740992"},
        Form{"GreatNumber", "UInt64", bytesOf({0, 0x20, 0, 0, 0, 0, 0, 1}),
             R"("9007199254740993")"},
        Form{"GreatestNumber", "UInt64", Bytes(8, 0xFF), R"("18446744073709551615")"},
        Form{"ExactNegativeNumber", "Int64", bytesOf({0xFF, 0xE0, 0, 0, 0, 0, 0, 0}),
             "-9007199254740992"},
        Form{"GreatNegativeNumber", "Int64", bytesOf({0x80, 0, 0, 0, 0, 0, 0, 0}),
             R"("-9223372036854775808")"},
        Form{"UnknownLength", "Length", Bytes(8, 0xFF), "-1"},
        Form{"True", "Boolean", bytesOf({1}), "true"},
        Form{"False", "Boolean", bytesOf({0}), "false"},
        Form{"Rational", "Rational", bytesOf({0, 0, 0x5D, 0xC0, 0, 0, 3, 0xE9}),
             R"({"numerator": 24000, "denominator": 1001})"},
        Form{"RationalOfNothing", "Rational", Bytes(8, 0), R"({"numerator": 0, "denominator": 0})"},
        Form{"Timestamp", "Timestamp", bytesOf({7, 0xE4, 2, 21, 22, 40, 51, 249}),
             R"("2020-02-21T22:40:51.996")"},
        Form{"LeapDay", "Timestamp", bytesOf({7, 0xD0, 2, 29, 0, 0, 0, 0}),
             R"("2000-02-29T00:00:00.000")"},
        Form{
            "NoLeapDay", "Timestamp", bytesOf({7, 0x6C, 2, 29, 0, 0, 0, 0}),
            R"({"year": 1900, "month": 2, "day": 29, "hour": 0, "minute": 0, "second": 0, "mSec4": 0})"},
        Form{
            "UnknownTime", "Timestamp", Bytes(8, 0),
            R"({"year": 0, "month": 0, "day": 0, "hour": 0, "minute": 0, "second": 0, "mSec4": 0})"},
        Form{
            "YearOfFiveDigits", "Timestamp", bytesOf({0x27, 0x10, 1, 1, 0, 0, 0, 0}),
            R"({"year": 10000, "month": 1, "day": 1, "hour": 0, "minute": 0, "second": 0, "mSec4": 0})"},
        Form{"Text", "UTF16String", bytesOf({0, 'a', 0xD8, 0x3D, 0xDE, 0, 0, 0, 0, 0}),
             "\"a\xF0\x9F\x98\x80\""},
        Form{"LoneLead", "UTF16String", bytesOf({0, 'a', 0xD8, 0x3D}), R"({"utf16": "0061D83D"})"},
        Form{"LoneTrail", "UTF16String", bytesOf({0xDE, 0, 0, 'a'}), R"({"utf16": "DE000061"})"},
        Form{"EmptyText", "UTF16String", {}, R"("")"},
        Form{"NarrowText", "ISO7String", bytesOf({'"', '\\', 0xE9}), "\"\\\"\\\\\xC3\xA9\""},
        Form{"CodeUnit", "UTF16", bytesOf({0, 'x'}), R"("x")"},
        Form{"ZeroCodeUnit", "UTF16", bytesOf({0, 0}), R"("\u0000")"},
        Form{"LoneCodeUnit", "UTF16", bytesOf({0xDC, 0}), R"({"utf16": "DC00"})"},
        Form{"KnownLabel", "UniversalLabel", hex("06.0e.2b.34.04.01.01.01.01.03.02.02.01.00.00.00"),
             R"({"label": "06.0e.2b.34.04.01.01.01.01.03.02.02.01.00.00.00",
                 "name": "Picture Essence Track"})"},
        Form{"UnknownLabel", "UniversalLabel", Bytes(16, 1),
             R"({"label": "01.01.01.01.01.01.01.01.01.01.01.01.01.01.01.01", "name": null})"},
        Form{"Uuid", "UUID", Bytes(16, 0xAB),
             R"("ab.ab.ab.ab.ab.ab.ab.ab.ab.ab.ab.ab.ab.ab.ab.ab")"},
        Form{"LocalTag", "LocalTag", bytesOf({0x3C, 0x0A}), R"("3c.0a")"},
        Form{"Bytes", "DataStream", bytesOf({0, 0xAB}), R"({"hex": "00AB"})"},
        Form{"NoBytes", "DataStream", {}, R"({"hex": ""})"},
        Form{"Version", "VersionType", bytesOf({1, 3}), R"({"major": 1, "minor": 3})"},
        Form{"ProductVersion", "ProductVersion", bytesOf({0, 1, 0, 2, 0, 3, 0, 4, 0, 5}),
             R"({"major": 1, "minor": 2, "patch": 3, "build": 4, "release": 5})"},
        Form{"PixelLayout", "RGBALayout",
             bytesOf({'R', 10, 'F', 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}),
             R"([{"code": 82, "depth": 10}, {"code": 70, "depth": 2}])"},
        Form{"CodingStyle", "J2KCodingStyleDefault", bytesOf({1, 0, 0, 1, 0, 0xFE}),
             R"({"scod": 1, "sGcod": 256, "spcod": {"hex": "FE"}})"},
        Form{"ListOfNumbers", "UInt8Batch", bytesOf({0, 0, 0, 2, 0, 0, 0, 1, 3, 4}), "[3, 4]"},
        Form{"EmptyList", "UInt8Array", bytesOf({0, 0, 0, 0, 0, 0, 0, 1}), "[]"},
        Form{"Dangling", "WeakReference", Bytes(16, 9),
             R"({"ref": "09.09.09.09.09.09.09.09.09.09.09.09.09.09.09.09", "class": null})"}),
    [](const auto& form) { return std::string(form.param.name); });

TEST(MetadataJson, holdsTheValuesOfTheDocumentOfRandomMetadata) {
    for (unsigned seed = 0; seed != 400; ++seed) {
        RandomModel random(seed, seed % 2 != 0);
        for (const auto* const start : random.model.partition) {
            ASSERT_EQ(differenceIn(random.model.partition, *start), "") << "seed " << seed;
            if (seed % 5 != 0) {
                break;
            }
        }
    }
}

TEST(MetadataJson, holdsTheValuesOfTheDocumentOfABitOfEverything) {
    Model model = emptyModel();
    fillRichly(model);
    for (const auto* const start : model.partition) {
        EXPECT_EQ(differenceIn(model.partition, *start), "");
    }
}

TEST(MetadataJson, holdsTheValuesOfTheDocumentOfRealFiles) {
    const std::filesystem::path folder = samplesDir();
    if (folder.empty()) {
        GTEST_SKIP() << "no folder of samples";
    }
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        mxf::NoWarnings warnings;
        mxf::File file(entry.path().string(), MetaMetadata::Dictionary::builtIn(), warnings);
        const auto header = file.readMetadata();
        const auto prefaces =
            header.metadata->find(Metadata::Structural::StructuralMetadataKeys::preface());
        ASSERT_FALSE(prefaces.empty()) << entry.path();
        EXPECT_EQ(differenceIn(*header.metadata, *prefaces.front()), "") << entry.path();
        ++files;
    }
    EXPECT_GT(files, 40U);
}

TEST(MetadataJson, namesTheMembersOfEnumerations) {
    Model model;
    auto& descriptor = model.set("CDCIDescriptor", 1);
    model.value(descriptor, "FrameLayout", Types::UInt8(1));
    model.value(descriptor, "SignalStandard", Types::SignalStandard(200));
    const Json properties =
        Json::parse(jsonOf(DocumentPlan(model.partition, descriptor, {})))["sets"][0]["properties"];
    EXPECT_EQ(properties["FrameLayout"], Json::parse(R"({"value": 1, "name": "SeparateFields"})"));
    EXPECT_EQ(properties["SignalStandard"], Json::parse(R"({"value": 200, "name": null})"));
}

TEST(MetadataJson, escapesWhatPeopleCantSeeAndWhatEndsAnElementOfHtml) {
    Model model = Model::extendedBy(RandomModel::things());
    auto& thing = model.set("Thing", 1);
    model.value(thing, "UTF16String",
                Types::UTF16String(
                    Platform::fromUtf8("</script>\x1b\xE2\x80\xAE\xF3\xA0\x81\x81\x7F").c_str()));
    EXPECT_THAT(jsonOf(DocumentPlan(model.partition, thing, {})),
                HasSubstr(R"("\u003c/script>\u001b\u202e\udb40\udc41\u007f")"));
}

TEST(MetadataJson, keepsWhatIsNoPropertyOfTheClassBesideThem) {
    Model model = Model::extendedBy(RandomModel::things());
    auto& thing = model.set("Thing", 1);
    model.value(thing, "UInt8", Types::UInt8(1));
    ASSERT_TRUE(model.misplaced(thing, "UInt8").parse(Model::view("\x02")));
    ASSERT_TRUE(model.misplaced(thing, "OtherNumber").parse(Model::view("\x03")));
    model.unknown(thing, 0x9000, "\x04");
    const Json set = Json::parse(jsonOf(DocumentPlan(model.partition, thing, {})))["sets"][0];
    EXPECT_EQ(set["properties"], Json::parse(R"({"UInt8": 1})"));
    const Json& other = set["other"];
    ASSERT_EQ(other.size(), 3U);
    EXPECT_EQ(other[0]["why"], "repeated");
    EXPECT_EQ(other[0]["property"], "UInt8");
    EXPECT_EQ(other[0]["value"], 2);
    EXPECT_EQ(other[1]["why"], "misplaced");
    EXPECT_EQ(other[1]["property"], "OtherNumber");
    EXPECT_EQ(other[2], Json::parse(R"({"why": "unknown", "property": null, "tag": "90.00",
                                        "label": null, "hex": "04"})"));
}

TEST(MetadataJson, hasPrefixesWhereAClassHasTwoPropertiesOfOneName) {
    Model model = Model::extendedBy(
        "namespace a urn:a\nnamespace b urn:b\nnamespace s377m urn:SMPTE:S377M\n"
        "set a:Twice 06.0e.2b.34.02.53.01.01.0e.7f.0b.00.00.00.00.00 s377m:InterchangeObject "
        "concrete\n"
        "property a:Same 06.0e.2b.34.01.01.01.01.0e.7f.0b.00.00.00.01.00 - UInt8 optional -\n"
        "property b:Same 06.0e.2b.34.01.01.01.01.0e.7f.0b.00.00.00.02.00 - UInt8 optional -\n"
        "property b:Alone 06.0e.2b.34.01.01.01.01.0e.7f.0b.00.00.00.03.00 - UInt8 optional -\n");
    auto& set = model.set("Twice", 1);
    for (const auto& attribute : set.metaMetadataSet()->attributes()) {
        const auto& label = attribute->facts().definition->label();
        if (set.find(label) == nullptr && label.bytes()[10] == 0x0B) {
            set.createElement(label, attribute).parse(Model::view("\x07"));
        }
    }
    const Json properties =
        Json::parse(jsonOf(DocumentPlan(model.partition, set, {})))["sets"][0]["properties"];
    EXPECT_EQ(properties, Json::parse(R"({"a:Same": 7, "b:Same": 7, "Alone": 7})"));
}

/// Each level would add to all lines inside of it, and sets may be hundreds deep.
TEST(MetadataJson, indentsDeepLevelsNoFurther) {
    Model model = Model::extendedBy(RandomModel::things());
    constexpr Types::u8 depth = 100;
    for (Types::u8 number = 1; number <= depth; ++number) {
        model.reference(model.set("Thing", number), "StrongReference",
                        static_cast<Types::u8>(number + 1));
    }
    const std::string json =
        jsonOf(DocumentPlan(model.partition, **model.partition.begin(), {true, false}));
    EXPECT_THAT(json, HasSubstr("\n" + std::string(80, ' ') + "\"class\""));
    EXPECT_THAT(json, ::testing::Not(HasSubstr(std::string(81, ' '))));
    EXPECT_EQ(differenceIn(model.partition, **model.partition.begin()), "");
}

TEST(MetadataJson, hasTheNameOfTheRegistersForThePropertyThatIsInThem) {
    Model model;
    auto& descriptor = model.set("MPEGVideoDescriptor", 1);
    for (const auto& attribute : descriptor.metaMetadataSet()->attributes()) {
        const auto& definition = *attribute->facts().definition;
        if (MetaMetadata::tagName(definition) == "MaxGOP") {
            const std::string bytes = definition.dataType() == Types::Identifiers::UInt16
                                          ? std::string("\0\2", 2)
                                          : std::string("\0\0\0\3", 4);
            ASSERT_TRUE(
                descriptor.createElement(definition.label(), attribute).parse(Model::view(bytes)));
        }
    }
    const Json properties =
        Json::parse(jsonOf(DocumentPlan(model.partition, descriptor, {})))["sets"][0]["properties"];
    EXPECT_EQ(properties, Json::parse(R"({"MaxGOP": 2, "avidEl:MaxGOP": 3})"));
}

/// A class that inherits the vendor's property, and one that has that of the registers as well.
TEST(MetadataJson, definesDifferentPropertiesOfOneNameByTheirClasses) {
    Model model;
    const auto fill = [](Metadata::MetadataSet& set) {
        for (const auto& attribute : set.metaMetadataSet()->attributes()) {
            const auto& definition = *attribute->facts().definition;
            if (MetaMetadata::tagName(definition) == "MaxGOP") {
                const std::size_t size =
                    definition.dataType() == Types::Identifiers::UInt16 ? 2 : 4;
                set.createElement(definition.label(), attribute)
                    .parse(Model::view(std::string(size, '\1')));
            }
        }
    };
    auto& content = model.set("ContentStorage", 1);
    fill(model.set("CDCIDescriptor", 2));
    fill(model.set("MPEGVideoDescriptor", 3));
    const mxf::SetOffsets offsets;
    XMLBuilder::JsonContent wanted;
    wanted.offsets = &offsets;
    const Json definitions =
        Json::parse(jsonOf(DocumentPlan(model.partition, content, {}), wanted))["definitions"];
    EXPECT_EQ(definitions["MaxGOP"]["valueType"], "Int32");
    EXPECT_EQ(definitions["MPEGVideoDescriptor/MaxGOP"]["valueType"], "UInt16");
}

/// Every offset leads to the bytes that are written for it.
TEST(MetadataJson, saysWhereInTheFileSetsAndPropertiesAre) {
    const std::filesystem::path path = sourceDir() / "examples" / "sample.mxf";
    std::ifstream stream(path, std::ios::binary);
    const std::string file{std::istreambuf_iterator<char>(stream), {}};
    mxf::NoWarnings warnings;
    const auto header =
        mxf::File(path.string(), MetaMetadata::Dictionary::builtIn(), warnings).readMetadata();
    const auto prefaces =
        header.metadata->find(Metadata::Structural::StructuralMetadataKeys::preface());
    ASSERT_FALSE(prefaces.empty());
    XMLBuilder::JsonContent content;
    content.offsets = &header.offsets;
    content.mostBytes = 8;
    const Json json =
        Json::parse(jsonOf(DocumentPlan(*header.metadata, *prefaces.front(), {}), content));
    const auto hexAt = [&](std::size_t offset, std::size_t size) {
        std::string text;
        for (const char c : file.substr(offset, size)) {
            char digits[4];
            std::snprintf(digits, sizeof digits, "%02X", unsigned{static_cast<unsigned char>(c)});
            text += digits;
        }
        return text;
    };
    std::size_t properties = 0;
    for (const Json& set : json["sets"]) {
        const std::size_t offset = set["offset"];
        EXPECT_EQ(hexAt(offset, 4), "060E2B34") << set["class"];
        EXPECT_LE(offset + set["length"].get<std::size_t>(), header.end);
        std::istringstream raw(set["raw"].get<std::string>());
        for (const auto& [key, value] : set["properties"].items()) {
            constexpr std::size_t head = 4;
            std::string tag;
            std::size_t at = 0;
            std::size_t length = 0;
            std::string hex;
            raw >> tag >> at >> length >> std::ws;
            std::getline(raw, hex, ';');
            EXPECT_EQ(hexAt(offset + at + head, std::min<std::size_t>(length, 8)), hex)
                << set["class"] << key;
            EXPECT_TRUE(json["definitions"].contains(key)) << key;
            ++properties;
        }
    }
    EXPECT_GT(properties, 100U);
    EXPECT_EQ(json["definitions"]["EditRate"]["valueType"], "Rational");
}

} // namespace
} // namespace Corvid::Testing
