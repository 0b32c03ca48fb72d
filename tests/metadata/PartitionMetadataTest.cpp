#include "host/types/UID.h"
#include "tests/metadata/MetadataSupport.h"

namespace Corvid::Testing {
namespace {

using namespace Metadata;
using PartitionMetadataTest = MetadataTest;

TEST_F(PartitionMetadataTest, createsSetsWithEveryPropertyOfTheClassAndItsAncestors) {
    const auto& set = partition.createMetadataSet(prefaceKey());
    EXPECT_EQ(set.metaMetadataSet(), dictionary->findSet(prefaceKey()));
    EXPECT_EQ(set.key(), prefaceKey());
    std::vector<Types::UniversalLabel> listed;
    for (const auto& [label, element] : set) {
        listed.push_back(label);
        EXPECT_EQ(element->isSkipped(), label != instanceUID());
        EXPECT_EQ(element->definition(), dictionary->findElement(label));
        EXPECT_EQ(element->localTag(), 0);
    }
    const std::vector<Types::UniversalLabel> expected = {
        instanceUID(), number,  text,   child,   friendOf,   childArray,
        friendBatch,   numbers, labels, dynamic, childBatch, labelOf(0x20)};
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
}

TEST_F(PartitionMetadataTest, refusesToBeWithoutDictionaryAndToTakeNoDarkSet) {
    EXPECT_THROW(PartitionMetadata({}), Exceptions::InvalidArgument);
    EXPECT_THROW(partition.addDarkMetadataSet({}), Exceptions::InvalidArgument);
    EXPECT_EQ(partition.darkBegin(), partition.darkEnd());
}

TEST_F(PartitionMetadataTest, makesTheElementsOfANewSetWhenTheyAreAskedFor) {
    auto& set = partition.createMetadataSet(prefaceKey());
    EXPECT_EQ(set.made().size(), 1U);
    EXPECT_EQ(set.find(labelOf(0x7E)), nullptr);
    Element* const late = set.find(numbers);
    Element* const early = set.find(number);
    ASSERT_NE(late, nullptr);
    EXPECT_EQ(set.find(numbers), late);
    EXPECT_EQ(set.made().size(), 3U);
    const std::size_t listed = set.metaMetadataSet()->attributes().size();
    const auto& behind = set.createInvalidElement(misplaced(number));
    EXPECT_EQ(behind.position(), listed);

    EXPECT_EQ(static_cast<std::size_t>(set.end() - set.begin()), listed);
    EXPECT_EQ(set.find(numbers), late);
    EXPECT_EQ(set.find(number), early);
    // The place of an element is that of its property in the class, whichever was first.
    const auto& attributes = set.metaMetadataSet()->attributes();
    for (std::size_t i = 0; i != listed; ++i) {
        EXPECT_EQ(set.find(attributes[i]->facts().definition->label())->position(), i);
    }
    EXPECT_EQ(set.createInvalidElement(misplaced(number)).position(), listed + 1);
}

TEST_F(PartitionMetadataTest, createsSetsWithFreshInstanceUids) {
    const auto& one = partition.createMetadataSet(otherKey());
    const auto& other = partition.createMetadataSet(otherKey());
    EXPECT_TRUE(one.hasInstanceUID());
    EXPECT_NE(one.instanceUID(), other.instanceUID());
    EXPECT_EQ(one.instanceUID()[6] >> 4, 4);
    const auto fixed = [](u8* bytes, std::size_t size) { std::fill_n(bytes, size, u8{0}); };
    const auto before = Types::Factories::UID::setRandomSource(fixed);
    const Types::UUID zeros = partition.createMetadataSet(otherKey()).instanceUID();
    Types::Factories::UID::setRandomSource(before);
    EXPECT_EQ(zeros, Types::UUID(std::array<u8, 16>{0, 0, 0, 0, 0, 0, 0x40, 0, 0x80}));
}

TEST_F(PartitionMetadataTest, takesAKeyOfAnotherVersionAndKeepsIt) {
    auto bytes = prefaceKey().bytes();
    bytes[7] = 0x0D;
    const auto& set = partition.createMetadataSet(KLV::Key(bytes));
    EXPECT_EQ(set.key(), KLV::Key(bytes));
    EXPECT_EQ(partition.find(prefaceKey()).size(), 1U);
}

TEST_F(PartitionMetadataTest, refusesAKeyThatTheDictionaryLacks) {
    try {
        partition.createMetadataSet(keyOf(0x70));
        FAIL();
    } catch (const Exceptions::InvalidArgument& problem) {
        EXPECT_NE(
            Platform::toUtf8(problem.message()).find(Platform::toUtf8(keyOf(0x70).toString())),
            std::string::npos);
    }
    EXPECT_EQ(partition.size(), 0U);
}

TEST_F(PartitionMetadataTest, findsSetsByKeyInTheirOrder) {
    auto& first = makeSet(otherKey(), 1);
    auto& preface = makeSet(prefaceKey(), 2);
    auto& second = makeSet(otherKey(), 3);
    auto& group = partition.createDarkParsedGroup(keyOf(0x70));
    const auto list = [](const PartitionMetadata::Sets& sets) {
        return std::vector<MetadataSet*>(sets.begin(), sets.end());
    };
    EXPECT_EQ(list(partition.find(otherKey())), (std::vector<MetadataSet*>{&first, &second}));
    EXPECT_EQ(list(partition.find(keyOf(0x70))), (std::vector<MetadataSet*>{&group}));
    EXPECT_TRUE(partition.find(privateKey()).empty());
    EXPECT_EQ(std::vector<MetadataSet*>(partition.begin(), partition.end()),
              (std::vector<MetadataSet*>{&first, &preface, &second, &group}));
}

TEST_F(PartitionMetadataTest, keepsDarkSetsInTheirOrder) {
    EXPECT_EQ(partition.darkBegin(), partition.darkEnd());
    const Bytes bytes = {1, 2, 3};
    for (const auto octets : {u8{9}, u8{1}}) {
        KLV::Value value(bytes.data(), octets == 1 ? 0 : bytes.size());
        partition.addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet>(
            new DarkMetadataSet(keyOf(octets), octets, value)));
    }
    auto dark = partition.darkBegin();
    EXPECT_EQ((*dark)->key(), keyOf(9));
    EXPECT_EQ((*dark)->berLength(), 9);
    EXPECT_EQ(Bytes((*dark)->value()->begin(), (*dark)->value()->end()), bytes);
    ++dark;
    EXPECT_EQ((*dark)->berLength(), 1);
    EXPECT_EQ((*dark)->value()->size(), 0U);
    EXPECT_EQ(++dark, partition.darkEnd());
}

TEST_F(PartitionMetadataTest, takesItsLastSetAwayAgain) {
    makeSet(otherKey(), 1);
    const auto& last = makeSet(otherKey(), 2);
    EXPECT_EQ(partition.resolve(uuidOf(2)).size(), 1U);
    partition.removeLast(last);
    EXPECT_EQ(partition.size(), 1U);
    EXPECT_TRUE(partition.resolve(uuidOf(2)).empty());
    EXPECT_EQ(partition.resolve(uuidOf(1)).size(), 1U);
}

TEST_F(PartitionMetadataTest, takesSetsAwayInAnyOrder) {
    const auto& first = makeSet(otherKey(), 1);
    const auto& second = makeSet(otherKey(), 2);
    const auto& third = makeSet(prefaceKey(), 3);
    const auto& fourth = makeSet(otherKey(), 1);
    EXPECT_EQ(partition.resolve(uuidOf(1)).size(), 2U);
    partition.remove({});
    EXPECT_EQ(partition.size(), 4U);
    partition.remove({&third, &first});
    EXPECT_EQ(std::vector<const MetadataSet*>(partition.begin(), partition.end()),
              (std::vector<const MetadataSet*>{&second, &fourth}));
    EXPECT_EQ(partition.resolve(uuidOf(1)).size(), 1U);
    EXPECT_TRUE(partition.find(prefaceKey()).empty());
}

TEST_F(PartitionMetadataTest, leavesSetsOfAnotherPartitionAlone) {
    const auto& own = makeSet(otherKey(), 1);
    PartitionMetadata other(dictionaryOf(dictionaryText));
    const auto& foreign = other.createMetadataSet(otherKey());
    partition.remove({&foreign, nullptr, &own, &own});
    EXPECT_EQ(partition.size(), 0U);
    ASSERT_EQ(other.size(), 1U);
    EXPECT_EQ(*other.begin(), &foreign);
}

TEST_F(PartitionMetadataTest, takesDarkSetsAway) {
    for (const auto last : {u8{1}, u8{2}, u8{3}}) {
        KLV::Value value(&last, 1);
        partition.addDarkMetadataSet(
            Templates::auto_ptr<DarkMetadataSet>(new DarkMetadataSet(keyOf(last), 4, value)));
    }
    const auto third = partition.removeDark(std::next(partition.darkBegin()));
    EXPECT_EQ((*third)->key(), keyOf(3));
    EXPECT_EQ((*partition.darkBegin())->key(), keyOf(1));
    EXPECT_EQ(std::distance(partition.darkBegin(), partition.darkEnd()), 2);
}

TEST_F(PartitionMetadataTest, keepsItsDictionaryAlive) {
    auto lent = dictionaryOf(dictionaryText);
    PartitionMetadata other(lent);
    lent = {};
    const auto& set = other.createMetadataSet(prefaceKey());
    EXPECT_EQ(Platform::toUtf8(set.metaMetadataSet()->attribute("XMLTagName")), "Preface");
}

} // namespace
} // namespace Corvid::Testing
