#include "editing/compare/Comparison.h"

#include "host/metadata/Names.h"
#include "host/mxf/File.h"
#include "tests/editing/CopyPartition.h"
#include "tests/editing/Differences.h"
#include "tests/support/Paths.h"

#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Kind = Editing::DifferenceKind;
using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

namespace {

/// The metadata of the sample that comes with the project.
mxf::HeaderMetadata sample() {
    mxf::NoWarnings warnings;
    mxf::File file((sourceDir() / "examples" / "sample.mxf").string(),
                   MetaMetadata::Dictionary::builtIn(), warnings);
    return file.readMetadata();
}

TEST(Comparison, findsNoDifferenceBetweenCopies) {
    const auto header = sample();
    const auto copy = copyOf(*header.metadata);
    const auto comparison = Editing::compare(*header.metadata, *copy);
    EXPECT_THAT(comparison.differences, IsEmpty());
    EXPECT_EQ(comparison.sets, 27U);
    EXPECT_EQ(comparison.properties, 180U);
}

/// Every change of a value is one difference, which names the set and the property.
void expectChangesToShow(PartitionMetadata& source) {
    std::size_t changes = 0;
    forEachChangedByte(source, [&](const MetadataSet& set, const Element& element,
                                   PartitionMetadata& copy) {
        if (holdsNothing(element)) {
            return;
        }
        ++changes;
        const auto differences = differencesOf(source, copy);
        if (isInstanceUID(set, element)) {
            EXPECT_THAT(kindsOf(differences),
                        UnorderedElementsAre(Kind::missingSet, Kind::extraSet));
            return;
        }
        ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::otherValue)) << linesOf(differences);
        EXPECT_EQ(differences.front().set, Metadata::className(set));
        EXPECT_EQ(differences.front().instanceUID, Platform::toUtf8(set.instanceUID().toString()));
        EXPECT_EQ(differences.front().property,
                  Metadata::propertyName(source.partitionDictionary(), element));
    });
    EXPECT_GT(changes, 1000U);
}

TEST(Comparison, reportsEveryChangedByteOfAFile) { expectChangesToShow(*sample().metadata); }

TEST(Comparison, reportsEveryChangedByteOfEveryType) {
    expectChangesToShow(everyType("typical")->partition());
}

/// Every missing property is one difference, and one that is too many likewise.
void expectMissingPropertiesToShow(PartitionMetadata& source) {
    forEachMissingValue(source, [&](const MetadataSet& set, const Element& element,
                                    PartitionMetadata& copy) {
        const auto there = differencesOf(source, copy);
        const auto back = differencesOf(copy, source);
        if (isInstanceUID(set, element)) {
            EXPECT_THAT(kindsOf(there), ElementsAre(Kind::missingSet, Kind::extraSet));
            EXPECT_THAT(kindsOf(back), ElementsAre(Kind::newInstanceUID));
            return;
        }
        ASSERT_EQ(there.size(), 1U) << linesOf(there);
        EXPECT_EQ(there.front().kind, Kind::missingProperty) << linesOf(there);
        ASSERT_THAT(kindsOf(back), ElementsAre(Kind::extraProperty));
        for (const auto& each : {there.front(), back.front()}) {
            EXPECT_EQ(each.set, Metadata::className(set));
            EXPECT_EQ(each.property, Metadata::propertyName(source.partitionDictionary(), element));
        }
    });
}

TEST(Comparison, reportsEveryMissingAndEveryAddedProperty) {
    expectMissingPropertiesToShow(*sample().metadata);
    expectMissingPropertiesToShow(everyType("typical")->partition());
}

TEST(Comparison, reportsEveryMissingAndEveryAddedSet) {
    const auto header = sample();
    for (const MetadataSet* set : *header.metadata) {
        Edits edits;
        edits.keepsSet = [&](const MetadataSet& each) { return &each != set; };
        const auto copy = copyOf(*header.metadata, edits);
        const auto there = differencesOf(*header.metadata, *copy);
        const auto back = differencesOf(*copy, *header.metadata);
        ASSERT_THAT(kindsOf(there), ElementsAre(Kind::missingSet));
        ASSERT_THAT(kindsOf(back), ElementsAre(Kind::extraSet));
        for (const auto& each : {there.front(), back.front()}) {
            EXPECT_EQ(each.set, Metadata::className(*set));
            EXPECT_EQ(each.instanceUID, Platform::toUtf8(set->instanceUID().toString()));
        }
    }
}

TEST(Comparison, reportsASetOfAnotherClass) {
    Model before;
    Model after;
    before.set("MaterialPackage", 1);
    after.set("SourcePackage", 1);
    const auto differences = differencesOf(before.partition, after.partition);
    ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::otherClass));
    EXPECT_EQ(differences.front().set, "MaterialPackage");
    EXPECT_EQ(differences.front().detail, "came back as SourcePackage");
}

TEST(Comparison, followsRenamingAndReportsReferencesThatDoNot) {
    Model before;
    before.reference(before.set("Preface", 1), "ContentStorageObject", 2);
    before.set("ContentStorage", 2);
    Model after;
    after.reference(after.set("Preface", 11), "ContentStorageObject", 12);
    after.set("ContentStorage", 12);
    Editing::Renaming renaming;
    renaming.add(uuid(1), uuid(11));
    renaming.add(uuid(2), uuid(12));
    EXPECT_THAT(differencesOf(before.partition, after.partition, renaming), IsEmpty());
    EXPECT_FALSE(kindsBetween(before.partition, after.partition).empty());

    Model astray;
    astray.reference(astray.set("Preface", 11), "ContentStorageObject", 2);
    astray.set("ContentStorage", 12);
    const auto differences = differencesOf(before.partition, astray.partition, renaming);
    ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::otherValue));
    EXPECT_EQ(differences.front().property, "ContentStorageObject");
}

TEST(Comparison, reportsInstanceUIDsThatBecameOne) {
    Model before;
    before.set("Preface", 1);
    before.set("Preface", 2);
    Model after;
    after.set("Preface", 11);
    after.set("Preface", 11);
    Editing::Renaming renaming;
    renaming.add(uuid(1), uuid(11));
    renaming.add(uuid(2), uuid(11));
    const auto differences = differencesOf(before.partition, after.partition, renaming);
    ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::sharedIdentifier));
    EXPECT_EQ(differences.front().instanceUID, uuidText(2));
}

TEST(Comparison, ordersOfSetsAndPropertiesDoNotMatter) {
    Model before;
    auto& first = before.set("Identification", 1);
    before.value(first, "ApplicationName", Types::UTF16String(Platform::fromUtf8("b").c_str()));
    before.value(first, "ApplicationSupplierName",
                 Types::UTF16String(Platform::fromUtf8("a").c_str()));
    before.set("Preface", 2);
    Model after;
    after.set("Preface", 2);
    auto& second = after.set("Identification", 1);
    after.value(second, "ApplicationSupplierName",
                Types::UTF16String(Platform::fromUtf8("a").c_str()));
    after.value(second, "ApplicationName", Types::UTF16String(Platform::fromUtf8("b").c_str()));
    EXPECT_THAT(differencesOf(before.partition, after.partition), IsEmpty());
}

TEST(Comparison, tellsCopiesOfOneInstanceUIDApartByTheirContent) {
    const auto fill = [](Model& model, std::initializer_list<const char*> names) {
        for (const char* name : names) {
            model.value(model.set("Identification", 1), "ApplicationName",
                        Types::UTF16String(Platform::fromUtf8(name).c_str()));
        }
    };
    const auto kinds = [&](std::initializer_list<const char*> before,
                           std::initializer_list<const char*> after) {
        Model one;
        Model other;
        fill(one, before);
        fill(other, after);
        return kindsBetween(one.partition, other.partition);
    };
    EXPECT_THAT(kinds({"a", "b"}, {"b", "a"}), IsEmpty());
    EXPECT_THAT(kinds({"a", "a"}, {"a", "a"}), IsEmpty());
    EXPECT_THAT(kinds({"a", "b", "a"}, {"a", "b"}), ElementsAre(Kind::mergedCopy));
    EXPECT_THAT(kinds({"a", "b"}, {"a"}), ElementsAre(Kind::missingSet));
    EXPECT_THAT(kinds({"a", "b"}, {"a", "c"}), ElementsAre(Kind::otherValue));
    EXPECT_THAT(kinds({"a"}, {"a", "a"}), ElementsAre(Kind::extraSet));
    EXPECT_THAT(kinds({"a", "b"}, {}), ElementsAre(Kind::missingSet, Kind::missingSet));
}

TEST(Comparison, comparesDarkSetsByTheirBytes) {
    using Rows = std::vector<std::pair<int, std::string>>; // octets of the length, value
    const auto kinds = [](const Rows& before, const Rows& after) {
        Model one;
        Model other;
        for (const auto& [octets, bytes] : before) {
            one.darkSet(Model::darkKey(), static_cast<unsigned char>(octets), bytes);
        }
        for (const auto& [octets, bytes] : after) {
            other.darkSet(Model::darkKey(), static_cast<unsigned char>(octets), bytes);
        }
        EXPECT_EQ(Editing::compare(one.partition, other.partition).sets, before.size());
        return kindsBetween(one.partition, other.partition);
    };
    EXPECT_THAT(kinds({{4, "a"}, {4, "b"}}, {{4, "b"}, {4, "a"}}), IsEmpty());
    EXPECT_THAT(kinds({{4, "a"}}, {{4, "b"}}), ElementsAre(Kind::otherValue));
    EXPECT_THAT(kinds({{4, "a"}}, {{9, "a"}}), ElementsAre(Kind::otherValue));
    EXPECT_THAT(kinds({{4, "a"}, {4, "a"}}, {{4, "a"}}), ElementsAre(Kind::missingSet));
    EXPECT_THAT(kinds({{4, "a"}}, {}), ElementsAre(Kind::missingSet));
    EXPECT_THAT(kinds({}, {{4, "a"}}), ElementsAre(Kind::extraSet));
}

TEST(Comparison, comparesGroupsOfUnknownSetsWithDarkOnes) {
    Model before;
    auto& group = before.darkGroup(7);
    group.setBerLength(4);
    before.unknown(group, 0x8001, "abc");
    const std::string value = std::string("\x3C\x0A\x00\x10", 4) + std::string(15, '\0') + "\x07" +
                              std::string("\x80\x01\x00\x03", 4) + "abc";
    Model after;
    after.darkSet(Model::darkKey(), 4, value);
    EXPECT_THAT(differencesOf(before.partition, after.partition), IsEmpty());
    Model damaged;
    damaged.darkSet(Model::darkKey(), 4, value.substr(0, value.size() - 1) + "d");
    const auto differences = differencesOf(before.partition, damaged.partition);
    ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::otherValue));
    EXPECT_EQ(differences.front().instanceUID, uuidText(7));
    EXPECT_EQ(differences.front().set, Platform::toUtf8(KLV::Key(Model::darkKey()).toString()));
}

TEST(Comparison, comparesPropertiesThatStandInASetRepeatedlyInTheirOrder) {
    const auto kinds = [](std::initializer_list<int> before, std::initializer_list<int> after) {
        const auto fill = [](Model& model, std::initializer_list<int> numbers) {
            auto& set = model.set("Preface", 1);
            for (const int number : numbers) {
                model.misplaced<Metadata::SimpleElement>(set, "TrackID")
                    .set(Types::UInt32(static_cast<Types::u32>(number)).clone());
            }
        };
        Model one;
        Model other;
        fill(one, before);
        fill(other, after);
        return kindsBetween(one.partition, other.partition);
    };
    EXPECT_THAT(kinds({1, 2}, {1, 2}), IsEmpty());
    EXPECT_THAT(kinds({1, 2}, {2, 1}), ElementsAre(Kind::otherValue, Kind::otherValue));
    EXPECT_THAT(kinds({1, 2}, {1}), ElementsAre(Kind::missingProperty));
    EXPECT_THAT(kinds({1}, {1, 2}), ElementsAre(Kind::extraProperty));
}

TEST(Comparison, anUnknownPropertyGoesByItsLabelWhateverItsTag) {
    const Types::UniversalLabel label(Model::darkKey());
    const auto fill = [&](Model& model, Types::u16 tag, std::string_view bytes) {
        model.partition.partitionDictionary().add(Types::LocalTag(tag), label);
        model.unknown(model.set("Preface", 1), tag, bytes);
    };
    Model before;
    Model same;
    Model other;
    fill(before, 0x8001, "a");
    fill(same, 0x8002, "a");
    fill(other, 0x8001, "b");
    EXPECT_THAT(differencesOf(before.partition, same.partition), IsEmpty());
    const auto differences = differencesOf(before.partition, other.partition);
    ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::otherValue));
    EXPECT_EQ(differences.front().property, Platform::toUtf8(label.toString()));
    EXPECT_EQ(differences.front().detail, "61 came back as 62");
}

TEST(Comparison, aValueThatDoesNotFitGoesByItsLabelWhateverItsTag) {
    const auto label = Metadata::Structural::StructuralMetadataULs::instanceUID();
    Model dynamicTag;
    dynamicTag.partition.partitionDictionary().add(Types::LocalTag(0x8001), label);
    dynamicTag.unknown(dynamicTag.set("Preface", 1), 0x8001, "a");
    Model staticTag;
    staticTag.unknown(staticTag.set("Preface", 1), 0x3C0A, "a");
    EXPECT_THAT(differencesOf(dynamicTag.partition, staticTag.partition), IsEmpty());
    EXPECT_THAT(differencesOf(staticTag.partition, dynamicTag.partition), IsEmpty());
}

TEST(Comparison, reportsAnotherVersionOfTheLabelOfAnInstanceUID) {
    const auto label = Metadata::Structural::StructuralMetadataULs::instanceUID();
    const auto fill = [&](Model& model, unsigned char version) {
        auto inFile = label;
        inFile[7] = version;
        model.partition.partitionDictionary().add(Types::LocalTag(0x3C0A), inFile);
        auto& first = model.set("Preface", 1);
        auto& set = model.partition.createEmptyMetadataSet(first.key(), *first.metaMetadataSet());
        set.createElement(label, first.find(label)->metaAttribute(), 0x3C0A)
            .parse({uuid(2).rawBuffer(), 16});
    };
    Model before;
    Model same;
    Model other;
    fill(before, 1);
    fill(same, 1);
    fill(other, 2);
    EXPECT_THAT(differencesOf(before.partition, same.partition), IsEmpty());
    const auto differences = differencesOf(before.partition, other.partition);
    // That of the first set has no tag, so it gets the one of its label, too.
    ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::labelVersion, Kind::labelVersion));
    for (const auto& difference : differences) {
        EXPECT_EQ(difference.property, "InstanceUID");
        EXPECT_EQ(difference.detail, "version 01 came back as 02");
    }
}

TEST(Comparison, aPropertyWithoutATagHasTheVersionOfItsLabelThatThePrimerHas) {
    const auto fill = [](Model& model, unsigned char version, Types::u16 tag) {
        auto& set = model.set("Identification", 1);
        const auto attribute = model.misplaced(model.set("Preface", 2), "TrackID").metaAttribute();
        auto label = attribute->facts().definition->label();
        label[7] = version;
        model.partition.partitionDictionary().add(Types::LocalTag(0x8001), label);
        set.createInvalidElement(attribute, tag).parse(Model::view("abcd"));
    };
    for (const bool isTagged : {false, true}) {
        Model document;
        Model same;
        Model other;
        fill(document, 0x7E, 0);
        fill(same, 0x7E, isTagged ? 0x8001 : 0);
        fill(other, 0x7F, isTagged ? 0x8001 : 0);
        EXPECT_THAT(kindsBetween(document.partition, same.partition), IsEmpty());
        EXPECT_THAT(kindsBetween(same.partition, document.partition), IsEmpty());
        const auto differences = differencesOf(document.partition, other.partition);
        ASSERT_THAT(kindsOf(differences), ElementsAre(Kind::labelVersion));
        EXPECT_EQ(differences.front().property, "TrackID");
        EXPECT_EQ(differences.front().detail, "version 7e came back as 7f");
    }
}

TEST(Comparison, saysWhatWasThereAndWhatIsShortly) {
    const auto detail = [](const std::string& before, const std::string& after) {
        Model one;
        Model other;
        for (auto* each : {&one, &other}) {
            each->value(
                each->set("Identification", 1), "ApplicationName",
                Types::UTF16String(Platform::fromUtf8(each == &one ? before : after).c_str()));
        }
        return differencesOf(one.partition, other.partition).front().detail;
    };
    EXPECT_EQ(detail("a", "b"), "\"a\" came back as \"b\"");
    EXPECT_EQ(detail(std::string(100, 'x'), "b"),
              "\"" + std::string(60, 'x') + "...\" came back as \"b\"");
    // Cut between characters.
    EXPECT_EQ(detail(std::string(59, 'x') + "\xC3\xA9\xC3\xA9", "b"),
              "\"" + std::string(59, 'x') + "...\" came back as \"b\"");
}

} // namespace
