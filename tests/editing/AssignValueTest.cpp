#include "editing/values/AssignValue.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "tests/editing/EditedClip.h"
#include "tests/editing/OtherValues.h"
#include "tests/support/Model.h"

#include <fstream>
#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

using Editing::assignValue;
using Editing::textsOf;
using ::testing::ElementsAre;
using Strings = std::vector<std::string>;

std::string hexOf(const Metadata::Element& element) {
    DataIO::Memory::MemoryDataSink sink(element.serializedSize());
    element.serialize(sink);
    std::string text;
    for (std::size_t i = 0; i != sink.serializedSize(); ++i) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", sink.rawBuffer()[i]);
        text += pair;
    }
    return text;
}

struct Form {
    const char* name;
    const char* set;
    const char* property;
    Strings texts;
    const char* bytes;
};
void PrintTo(const Form& each, std::ostream* out) { *out << each.name; }

class AssignsValue : public ::testing::TestWithParam<Form> {};

TEST_P(AssignsValue, asPeopleWriteIt) {
    Model model;
    auto& element = model.element(model.set(GetParam().set, 1), GetParam().property);
    EXPECT_TRUE(assignValue(model.partition, element, GetParam().texts));
    EXPECT_EQ(hexOf(element), GetParam().bytes);
    EXPECT_EQ(textsOf(element), GetParam().texts);
    EXPECT_FALSE(assignValue(model.partition, element, GetParam().texts)) << "it has that value";
}

INSTANTIATE_TEST_SUITE_P(
    , AssignsValue,
    ::testing::Values(
        Form{"Number", "TimelineTrack", "TrackID", {"4294967295"}, "ffffffff"},
        Form{"NegativeNumber", "TimelineTrack", "Origin", {"-2"}, "fffffffffffffffe"},
        Form{"Boolean", "Timecode", "DropFrame", {"1"}, "01"},
        Form{"Text", "MaterialPackage", "PackageName", {"a \xC3\xBC"}, "0061002000fc"},
        Form{"EmptyText", "MaterialPackage", "PackageName", {""}, ""},
        Form{"Rational", "TimelineTrack", "EditRate", {"-30000/1001"}, "ffff8ad0000003e9"},
        Form{"Timestamp",
             "MaterialPackage",
             "CreationTime",
             {"2024-02-29 01:02:03.996"},
             "07e8021d010203f9"},
        Form{"UnknownTime",
             "MaterialPackage",
             "CreationTime",
             {"0000-00-00 00:00:00.000"},
             "0000000000000000"},
        Form{"ProductVersion",
             "Identification",
             "ToolkitVersion",
             {"1.2.3.4.5"},
             "00010002000300040005"},
        Form{"Label",
             "Preface",
             "OperationalPattern",
             {"06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00"},
             "060e2b34040101010d01020101010900"},
        Form{"Layout",
             "RGBADescriptor",
             "PixelLayout",
             {"82/10,71/10,66/10,0/0,0/0"},
             "520a470a420a00000000000000000000"},
        Form{"CodingStyle",
             "JPEG2000SubDescriptor",
             "CodingStyleDefault",
             {"1,67108865,0505040001"},
             "01040000010505040001"},
        Form{"Components",
             "JPEG2000SubDescriptor",
             "PictureComponentSizing",
             {"11,1,1", "11,2,2"},
             "00000002000000030b01010b0202"},
        Form{"List",
             "CDCIDescriptor",
             "VideoLineMap",
             {"21", "584"},
             "00000002000000040000001500000248"},
        Form{"EmptyList", "CDCIDescriptor", "VideoLineMap", {}, "0000000000000004"}),
    [](const auto& each) { return std::string(each.param.name); });

struct Wrong {
    const char* name;
    const char* set;
    const char* property;
    Strings texts;
    const char* message;
};
void PrintTo(const Wrong& each, std::ostream* out) { *out << each.name; }

class RefusesValue : public ::testing::TestWithParam<Wrong> {};

TEST_P(RefusesValue, withWhatIsExpected) {
    Model model;
    auto& set = model.set(GetParam().set, 1);
    Metadata::Element* element = &model.element(set, "InstanceUID");
    if (std::string(GetParam().property) != "InstanceUID") {
        element = &model.element(set, GetParam().property);
    } else {
        model.value(set, "InstanceUID", Testing::uuid(Types::u8{1}));
    }
    try {
        assignValue(model.partition, *element, GetParam().texts);
        FAIL() << "no refusal";
    } catch (const Exceptions::BaseException& error) {
        EXPECT_EQ(Platform::toUtf8(error.message()), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , RefusesValue,
    ::testing::Values(
        Wrong{"NoNumber",
              "TimelineTrack",
              "TrackID",
              {"two"},
              "rp210:TrackID: 'two', expected a whole number from 0 to 4294967295"},
        Wrong{"GreaterNumber",
              "Timecode",
              "FramesPerSecond",
              {"65536"},
              "rp210:FramesPerSecond: '65536', expected a whole number from 0 to 65535"},
        Wrong{"NoLabel",
              "Preface",
              "OperationalPattern",
              {"OP1a"},
              "rp210:OperationalPattern: 'OP1a', expected 16 pairs of hexadecimal digits with full "
              "stops between them"},
        Wrong{"HalfARational",
              "TimelineTrack",
              "EditRate",
              {"25"},
              "'25', expected Numerator/Denominator"},
        Wrong{"PartOfARational",
              "TimelineTrack",
              "EditRate",
              {"25/x"},
              "rp210:EditRate/Denominator: 'x', expected a whole number from -2147483648 to "
              "2147483647"},
        Wrong{"OddMilliseconds",
              "MaterialPackage",
              "CreationTime",
              {"2024-02-29 01:02:03.997"},
              "'2024-02-29 01:02:03.997', expected YYYY-MM-DD hh:mm:ss.mmm, with milliseconds in "
              "steps of 4"},
        Wrong{"NoCalendarHasIt",
              "MaterialPackage",
              "CreationTime",
              {"2023-02-29 01:02:03"},
              "rp210:CreationTime: no calendar has day 29"},
        Wrong{"ItemOfAList",
              "CDCIDescriptor",
              "VideoLineMap",
              {"21", "x"},
              "rp210:VideoLineMap/Element: 'x', expected a whole number from -2147483648 to "
              "2147483647"},
        Wrong{"ControlCharacter",
              "MaterialPackage",
              "PackageName",
              {"a\x01"},
              "the value has the character U+0001, which XML can't hold"},
        Wrong{"NoUtf8", "MaterialPackage", "PackageName", {"a\xFF"}, "the value is not UTF-8"},
        Wrong{"NoSet",
              "TimelineTrack",
              "TrackSegment",
              {"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.09"},
              "no set has the InstanceUID 00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.09"},
        Wrong{"LongText",
              "MaterialPackage",
              "PackageName",
              {std::string(32768, 'x')},
              "rp210:PackageName: value of 65536 bytes, expected at most 65535, which is what a "
              "property can hold"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(AssignValue, keepsInstanceUIDs) {
    Model model;
    auto& element =
        *model.set("Preface", 1).find(Metadata::Structural::StructuralMetadataULs::instanceUID());
    EXPECT_FALSE(assignValue(model.partition, element, {uuidText(1)}));
    EXPECT_THROW(assignValue(model.partition, element, {uuidText(2)}), Exceptions::InvalidFormat);
}

TEST(AssignValue, refersToSets) {
    Model model;
    model.set("Sequence", 9);
    auto& element = model.element(model.set("TimelineTrack", 1), "TrackSegment");
    EXPECT_TRUE(assignValue(model.partition, element, {uuidText(9)}));
    EXPECT_THAT(textsOf(element), ElementsAre(uuidText(9)));
    auto& list = model.element(model.set("MaterialPackage", 2), "PackageTracks");
    EXPECT_TRUE(assignValue(model.partition, list, {uuidText(1), uuidText(9)}));
    EXPECT_THAT(textsOf(list), ElementsAre(uuidText(1), uuidText(9)));
}

TEST(AssignValue, keepsAReferenceToNothingThatIsThere) {
    Model model;
    auto& set = model.set("MaterialPackage", 2);
    model.references(set, "PackageTracks", {7, 2});
    auto& list = model.element(set, "PackageTracks");
    ASSERT_TRUE(list.parse(
        Model::view(std::string{0, 0, 0, 1, 0, 0, 0, 16} + std::string(15, '\0') + '\x07')));
    EXPECT_TRUE(assignValue(model.partition, list, {uuidText(7), uuidText(2)}));
}

TEST(AssignValue, keepsATerminator) {
    Model model;
    auto& element = model.element(model.set("MaterialPackage", 1), "PackageName");
    ASSERT_TRUE(element.parse(Model::view(std::string("\0a\0\0\0\0", 6))));
    EXPECT_FALSE(assignValue(model.partition, element, {"a"}));
    EXPECT_EQ(hexOf(element), "006100000000") << "what is the same keeps its bytes";
    EXPECT_TRUE(assignValue(model.partition, element, {"b"}));
    EXPECT_EQ(hexOf(element), "00620000");
}

TEST(AssignValue, changesNothingOfRealFilesWhereItIsTheSame) {
    for (const auto& path : realClips()) {
        std::ifstream file(path, std::ios::binary);
        EditedClip clip(Bytes(std::istreambuf_iterator<char>(file), {}));
        const auto metadata = clip.editor.readMetadata();
        for (Metadata::Element* const element : elementsOf(*metadata)) {
            EXPECT_FALSE(assignValue(*metadata, *element, textsOf(*element))) << path;
        }
        EXPECT_TRUE(clip.editor.plan(*metadata, {}).isEmpty()) << path;
    }
}

/// All properties of a file at once get other values, which are then in it.
TEST(AssignValue, changesWhateverRealFilesHave) {
    std::size_t changed = 0;
    for (const auto& path : realClips()) {
        std::ifstream file(path, std::ios::binary);
        EditedClip clip(Bytes(std::istreambuf_iterator<char>(file), {}));
        const auto metadata = clip.editor.readMetadata();
        std::vector<Strings> wanted;
        for (Metadata::Element* const element : elementsOf(*metadata)) {
            if (assignAnother(*metadata, *element)) {
                ++changed;
            } else {
                EXPECT_TRUE(mayStay(*element))
                    << path << " " << MetaMetadata::tagName(*element->definition());
            }
            wanted.push_back(textsOf(*element));
        }
        Editing::EditOptions options;
        options.allowsTechnical = true;
        options.copies = {Editing::CopyChoice::Kind::number, clip.editor.chosen()};
        const Bytes edited = clip.after(clip.editor.plan(*metadata, options));
        EditedClip again(edited);
        const auto now = again.editor.readMetadata();
        const auto elements = elementsOf(*now);
        ASSERT_EQ(elements.size(), wanted.size()) << path;
        for (std::size_t i = 0; i != wanted.size(); ++i) {
            EXPECT_EQ(textsOf(*elements[i]), wanted[i])
                << path << " " << MetaMetadata::tagName(*elements[i]->definition());
        }
    }
    EXPECT_GT(changed, 20U);
}

} // namespace
} // namespace Corvid::Testing
