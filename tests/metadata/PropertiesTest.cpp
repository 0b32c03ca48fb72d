#include "host/metadata/Properties.h"

#include "tests/metadata/MetadataSupport.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using namespace Corvid;

namespace {

/// What is thrown, in UTF-8.
template <class Exception, class Work> std::string messageOf(Work work) {
    try {
        work();
    } catch (const Exception& error) {
        return Platform::toUtf8(error.message());
    }
    return "nothing is thrown";
}

class Properties : public MetadataTest {
protected:
    Metadata::MetadataSet& preface = Metadata::createSet(partition, "Preface");
};

TEST_F(Properties, areFoundByTheirNames) {
    EXPECT_EQ(Metadata::findElement(preface, "Number"), nullptr);
    Metadata::setValue(preface, "Number", Types::UInt16(7));
    for (const char* name : {"Number", "t:Number"}) {
        const auto* element = Metadata::findElement(preface, name);
        ASSERT_NE(element, nullptr) << name;
        EXPECT_EQ(element->definition()->label(), number);
    }
    for (const char* name : {"number", "Numbe", "Numbers", "", ":", "t:", ":Number", "u:Number",
                             "Number:", "OtherOnly", "NUMBER", "Numb\xc3\xa9r"}) {
        EXPECT_EQ(Metadata::findElement(preface, name), nullptr) << name;
    }
    EXPECT_EQ(Metadata::findElement(preface, std::string_view("Number\0x", 8)), nullptr);
}

TEST_F(Properties, ofOtherClassesAreFoundWhereTheSetHasThem) {
    const u8 bytes[] = {9};
    ASSERT_TRUE(preface.createInvalidElement(misplaced(otherOnly)).parse({bytes, 1}));
    const auto* value = Metadata::findValue<Types::UInt8>(preface, "OtherOnly");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->value(), 9);
}

TEST_F(Properties, ofASetFromAFileAreAddedWhereItLacksThem) {
    auto& set = makeSet(prefaceKey(), 1);
    Metadata::setValue(set, "Text", Types::UTF16String(Platform::fromUtf8("new").c_str()));
    EXPECT_STREQ(
        Platform::toUtf8(Metadata::findValue<Types::UTF16String>(set, "Text")->value()).c_str(),
        "new");
    EXPECT_EQ(set.countValues(), 2U);
}

TEST_F(Properties, haveValuesOfTheTypeOfTheDictionary) {
    Metadata::setValue(preface, "Number", Types::UInt16(7));
    Metadata::setValue(preface, "Number", Types::UInt16(8));
    EXPECT_EQ(Metadata::findValue<Types::UInt16>(preface, "Number")->value(), 8);
    EXPECT_EQ(Metadata::findValue<Types::UTF16String>(preface, "Text"), nullptr);
}

TEST_F(Properties, ofAListHaveItems) {
    EXPECT_TRUE(Metadata::findItems<Types::UInt16>(preface, "Numbers").empty());
    Metadata::setItems<Types::UInt16>(preface, "Numbers", {1, 2, 3});
    const auto items = Metadata::findItems<Types::UInt16>(preface, "Numbers");
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[2].value(), 3);
    Metadata::setItems<Types::UniversalLabel>(preface, "Labels", {});
    EXPECT_FALSE(Metadata::findElement(preface, "Labels")->isSkipped());
}

TEST_F(Properties, referToSets) {
    auto& other = Metadata::createSet(partition, "t:Other");
    auto& another = Metadata::createSet(partition, "Other");
    Metadata::addTarget(preface, "Child", another);
    Metadata::addTarget(preface, "Child", other);
    for (const char* name : {"Kids", "Friends"}) {
        Metadata::addTarget(preface, name, other);
        Metadata::addTarget(preface, name, another);
        const auto targets = Metadata::findTargets(partition, preface, name);
        EXPECT_THAT(targets, testing::ElementsAre(&other, &another)) << name;
    }
    EXPECT_THAT(Metadata::findTargets(partition, preface, "Child"), testing::ElementsAre(&other));
    EXPECT_TRUE(Metadata::findTargets(partition, preface, "Friend").empty());
    EXPECT_TRUE(Metadata::findTargets(partition, preface, "Number").empty());
    partition.removeLast(another);
    EXPECT_THAT(Metadata::findTargets(partition, preface, "Kids"), testing::ElementsAre(&other));
}

TEST_F(Properties, areListedInTheOrderOfTheFile) {
    auto& set = makeSet(prefaceKey(), 1);
    add(set, text, 5).set(Types::UTF16String(Platform::fromUtf8("a").c_str()).clone());
    set.createInvalidElement(unknown(0x7F01)).parse({});
    add(set, dynamic);
    add(set, number, 4).set(Types::UInt16(1).clone());
    std::vector<u32> places;
    for (const Metadata::Element* element : Metadata::elementsOf(set)) {
        places.push_back(element->position());
    }
    EXPECT_THAT(places, testing::ElementsAre(0, 1, 2, 4));
}

TEST_F(Properties, ofSetsOfAClassAndThoseThatInheritFromIt) {
    auto& other = Metadata::createSet(partition, "Other");
    EXPECT_THAT(Metadata::findSets(partition, "Preface"), testing::ElementsAre(&preface));
    EXPECT_THAT(Metadata::findSets(partition, "Root"), testing::ElementsAre(&preface, &other));
    EXPECT_TRUE(Metadata::findSets(partition, "Nothing").empty());
}

struct Refusal {
    const char* name;
    void (*work)(Metadata::PartitionMetadata&, Metadata::MetadataSet&);
    const char* message;
};

class PropertiesRefuse : public Properties, public testing::WithParamInterface<Refusal> {};

TEST_P(PropertiesRefuse, whatDoesNotFit) {
    Metadata::setValue(preface, "Number", Types::UInt16(7));
    Metadata::setItems<Types::UInt16>(preface, "Numbers", {1});
    Metadata::addTarget(preface, "Child", preface);
    EXPECT_EQ(messageOf<Exceptions::InvalidArgument>([&] { GetParam().work(partition, preface); }),
              GetParam().message);
    EXPECT_EQ(Metadata::findValue<Types::UInt16>(preface, "Number")->value(), 7);
}

using Partition = Metadata::PartitionMetadata;
using Set = Metadata::MetadataSet;
INSTANTIATE_TEST_SUITE_P(
    , PropertiesRefuse,
    testing::Values(
        Refusal{"AValueOfAnotherType",
                [](Partition&, Set& set) { Metadata::setValue(set, "Number", Types::UInt8(1)); },
                "property Number of Preface is UInt16, not UInt8"},
        Refusal{"ToReadAnotherType",
                [](Partition&, Set& set) { Metadata::findValue<Types::Int16>(set, "Number"); },
                "property Number of Preface is UInt16, not Int16"},
        Refusal{"ToReadAListAsAValue",
                [](Partition&, Set& set) { Metadata::findValue<Types::UInt16>(set, "Numbers"); },
                "property Numbers of Preface is a list of UInt16, not UInt16"},
        Refusal{"ToReadAValueAsAList",
                [](Partition&, Set& set) { Metadata::findItems<Types::UInt16>(set, "Number"); },
                "property Number of Preface is UInt16, not a list of UInt16"},
        Refusal{"AListForAValue",
                [](Partition&, Set& set) { Metadata::setItems<Types::UInt16>(set, "Number", {1}); },
                "property Number of Preface is UInt16, not a list of UInt16"},
        Refusal{"ItemsOfAnotherType",
                [](Partition&, Set& set) { Metadata::setItems<Types::UInt8>(set, "Numbers", {1}); },
                "property Numbers of Preface is a list of UInt16, not a list of UInt8"},
        Refusal{"AReferenceAsAValue",
                [](Partition&, Set& set) {
                    Metadata::setValue(set, "Child", Types::StrongReference(uuidOf(1)));
                },
                "property Child of Preface is StrongReference"},
        Refusal{"ATargetForAValue",
                [](Partition&, Set& set) { Metadata::addTarget(set, "Number", set); },
                "property Number of Preface is UInt16"},
        Refusal{"APropertyOfAnotherClass",
                [](Partition&, Set& set) { Metadata::getElement(set, "OtherOnly"); },
                "the class of Preface has no property OtherOnly"},
        Refusal{"AClassThatIsNot",
                [](Partition& partition, Set&) { Metadata::createSet(partition, "Nothing"); },
                "the dictionary has no class Nothing"},
        Refusal{
            "AValueThatAProgramPutThere",
            [](Partition&, Set& set) {
                static_cast<Metadata::SimpleElement*>(set.find(text))->set(Types::UInt8(1).clone());
                Metadata::findValue<Types::UTF16String>(set, "Text");
            },
            "property Text of Preface holds UInt8, not UTF16String"}),
    [](const auto& each) { return each.param.name; });

TEST_F(Properties, ofUnknownClassesHaveNoNames) {
    auto& group = partition.createDarkParsedGroup(keyOf(0x11));
    EXPECT_EQ(Metadata::findElement(group, "Number"), nullptr);
    EXPECT_THROW(Metadata::getElement(group, "Number"), Exceptions::InvalidArgument);
}

TEST(PropertiesOfSeveralNamespaces, needAPrefixWhereTheyShareAName) {
    const auto dictionary = dictionaryOf(R"(
namespace t urn:test
namespace u urn:other
namespace rp210 urn:SMPTE:RP210
set t:Preface 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00 - concrete
property rp210:InstanceUID 06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00 3c.0a UUID required 1
property t:Note 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.01 - UInt8 optional 3
property u:Note 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.02 - UInt16 optional 4
property t:Names 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.03 - Array(ISO7String) optional 5
)");
    Metadata::PartitionMetadata partition(dictionary);
    auto& set = Metadata::createSet(partition, "Preface");
    EXPECT_EQ(messageOf<Exceptions::InvalidArgument>(
                  [&] { Metadata::setValue(set, "Note", Types::UInt8(1)); }),
              "several definitions have the name Note: t:Note, u:Note");
    Metadata::setValue(set, "u:Note", Types::UInt16(2));
    EXPECT_EQ(Metadata::findValue<Types::UInt16>(set, "u:Note")->value(), 2);
    EXPECT_EQ(Metadata::findElement(set, "t:Note"), nullptr);

    using Types::ISO7String;
    Metadata::setItems<ISO7String>(set, "Names", {ISO7String("ab"), ISO7String("cd")});
    EXPECT_EQ(messageOf<Exceptions::InvalidLength>([&] {
                  Metadata::setItems<ISO7String>(set, "Names", {ISO7String("ab"), ISO7String("c")});
              }),
              "property Names of Preface: an item has 1 bytes, expected 2 as the first has");
    EXPECT_STREQ(Metadata::findItems<ISO7String>(set, "Names")[1].value(), "cd");
}

} // namespace
