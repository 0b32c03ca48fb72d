#include "tests/metadata/MetadataSupport.h"

#include <initializer_list>
#include <random>
#include <set>

namespace Corvid::Testing {
namespace {

using namespace Metadata;
using Types::LocalTag;

class PartitionDictionaryTest : public MetadataTest {
protected:
    PartitionDictionary& primer = partition.partitionDictionary();
};

TEST_F(PartitionDictionaryTest, findsPrimerBeforeStaticTags) {
    const LocalTag tag(u16{0x1101});
    EXPECT_EQ(primer.find(tag, false), nullptr);
    ASSERT_NE(primer.find(tag, true), nullptr);
    EXPECT_EQ(*primer.find(tag, true), number);
    primer.add(tag, labelOf(0x77));
    EXPECT_EQ(*primer.find(tag, true), labelOf(0x77));
    EXPECT_EQ(primer.find(LocalTag(u16{0x8000}), true), nullptr);
    EXPECT_EQ(primer.find(LocalTag(u16{0}), true), nullptr);
    EXPECT_EQ(primer.dictionary().get(), dictionary.get());
}

TEST_F(PartitionDictionaryTest, keepsDuplicatesAndTakesTheFirst) {
    primer.add(LocalTag(u16{0x9001}), labelOf(1));
    primer.add(LocalTag(u16{0x9001}), labelOf(2));
    primer.add(LocalTag(u16{0x9002}), labelOf(1, 9));
    EXPECT_EQ(*primer.find(LocalTag(u16{0x9001}), false), labelOf(1));
    EXPECT_EQ(primer.findOrGenerate(labelOf(1)).value(), 0x9001);
    EXPECT_EQ(primer.findOrGenerate(labelOf(2)).value(), 0x9001);
    const std::vector<PartitionDictionary::Entry> entries(primer.begin(), primer.end());
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[1].second, labelOf(2));
    EXPECT_EQ(entries[2].second, labelOf(1, 9));
}

TEST_F(PartitionDictionaryTest, givesTheSameTagWhicheverIsCalledLikely) {
    std::minstd_rand random(11);
    const auto anyOf = [&](std::initializer_list<u16> tags) {
        return LocalTag(*(tags.begin() + random() % tags.size()));
    };
    const auto anyLabel = [&] {
        return labelOf(static_cast<u8>(1 + random() % 3), static_cast<u8>(1 + random() % 2));
    };
    for (int round = 0; round != 500; ++round) {
        PartitionDictionary plain(dictionary);
        PartitionDictionary hinted(dictionary);
        for (auto entries = random() % 5; entries != 0; --entries) {
            const LocalTag tag = anyOf({0x1101, 0x1102, 0x9001, 0x9002});
            const auto label = anyLabel();
            plain.add(tag, label);
            hinted.add(tag, label);
        }
        for (int k = 0; k != 6; ++k) {
            const auto label = anyLabel();
            const LocalTag likely = anyOf({0, 0x1101, 0x1102, 0x9001, 0x9002, 0xFFFF});
            ASSERT_EQ(hinted.findOrGenerate(label, likely), plain.findOrGenerate(label));
        }
        ASSERT_EQ(hinted.end() - hinted.begin(), plain.end() - plain.begin());
    }
}

TEST_F(PartitionDictionaryTest, findsALabelInTheVersionThatThePrimerHas) {
    EXPECT_EQ(primer.find(number), nullptr);
    primer.add(LocalTag(u16{0x9001}), labelOf(1, 9));
    primer.add(LocalTag(u16{0x9002}), labelOf(1, 8));
    for (const u8 version : {u8{1}, u8{8}, u8{9}}) {
        ASSERT_NE(primer.find(labelOf(1, version)), nullptr);
        EXPECT_EQ(*primer.find(labelOf(1, version)), labelOf(1, 9));
    }
    EXPECT_EQ(primer.find(text), nullptr);
}

TEST_F(PartitionDictionaryTest, generatesTheStaticTagIfItIsFree) {
    EXPECT_EQ(primer.findOrGenerate(labelOf(1, 9)).value(), 0x1101);
    EXPECT_EQ(*primer.find(LocalTag(u16{0x1101}), false), labelOf(1, 9));
    primer.add(LocalTag(u16{0x1102}), labelOf(0x77));
    EXPECT_EQ(primer.findOrGenerate(text).value(), 0xFFFF);
    EXPECT_EQ(primer.findOrGenerate(text).value(), 0xFFFF);
}

TEST_F(PartitionDictionaryTest, generatesTheHighestFreeDynamicTag) {
    primer.add(LocalTag(u16{0xFFFE}), labelOf(0x100));
    EXPECT_EQ(primer.findOrGenerate(labelOf(0x101)).value(), 0xFFFF);
    EXPECT_EQ(primer.findOrGenerate(labelOf(0x102)).value(), 0xFFFD);
}

TEST_F(PartitionDictionaryTest, throwsWhenAllDynamicTagsAreInUse) {
    std::set<u16> tags;
    for (u32 i = 0; i != 0x8000; ++i) {
        const LocalTag tag = primer.findOrGenerate(labelOf(static_cast<u16>(0x1000 + i)));
        ASSERT_FALSE(tag.isStaticLocalTag());
        ASSERT_TRUE(tags.insert(tag.value()).second);
    }
    EXPECT_THROW(primer.findOrGenerate(labelOf(0x9FFF)), Exceptions::LimitExceeded);
    EXPECT_THROW(primer.findOrGenerate(labelOf(0x9FFF)), Exceptions::LimitExceeded);
    EXPECT_EQ(primer.findOrGenerate(number).value(), 0x1101); // static ones are still free
    EXPECT_EQ(primer.findOrGenerate(labelOf(0x1000)).value(), 0xFFFF);
}

TEST_F(PartitionDictionaryTest, namesTheTagOfEveryKindOfAttribute) {
    EXPECT_EQ(primer.tagOf(*unknown(0x8123)).value(), 0x8123);
    EXPECT_EQ(primer.tagOf(*misplaced(otherOnly)).value(), 0x1201);
    const auto* attribute = dictionary->findSet(prefaceKey())->find(number);
    EXPECT_EQ(primer.tagOf(**attribute).value(), 0x1101);
}

TEST_F(PartitionDictionaryTest, givesNoTagThatAnUnknownElementBears) {
    auto& set = makeSet(prefaceKey(), 1);
    set.createInvalidElement(unknown(0xFFFF), 0xFFFF);
    set.createInvalidElement(unknown(0x1101));
    EXPECT_EQ(primer.find(LocalTag(u16{0xFFFF}), true), nullptr);
    EXPECT_EQ(*primer.find(LocalTag(u16{0x1101}), true), number);
    EXPECT_EQ(primer.findOrGenerate(dynamic).value(), 0xFFFE);
    EXPECT_EQ(primer.findOrGenerate(number).value(), 0x1101); // that one is for good
    primer.add(LocalTag(u16{0xFFFF}), labelOf(0x77));
    EXPECT_EQ(*primer.find(LocalTag(u16{0xFFFF}), false), labelOf(0x77));
}

TEST_F(PartitionDictionaryTest, givesUnknownElementsTheTagThatTheyNameUnlessItWasGenerated) {
    const auto tagFor = [this](u16 tag) { return primer.tagForUnknown(LocalTag(tag)).value(); };
    primer.add(LocalTag(u16{0x9001}), labelOf(0x77));
    EXPECT_EQ(tagFor(0x9001), 0x9001); // the primer pack says what that is
    EXPECT_EQ(primer.findOrGenerate(dynamic).value(), 0xFFFF);
    EXPECT_EQ(primer.findOrGenerate(number).value(), 0x1101);
    EXPECT_EQ(tagFor(0x1101), 0x1101);
    EXPECT_EQ(tagFor(0x8001), 0x8001);
    EXPECT_EQ(tagFor(0xFFFF), 0xFFFE);
    EXPECT_EQ(tagFor(0xFFFF), 0xFFFD);
    EXPECT_EQ(primer.find(LocalTag(u16{0xFFFE}), true), nullptr);
    EXPECT_EQ(primer.findOrGenerate(labelOf(0x101)).value(), 0xFFFC);
    EXPECT_EQ(tagFor(0xFFFC), 0xFFFB);
    EXPECT_EQ(tagFor(0xFFFE), 0xFFFE);
}

TEST_F(PartitionDictionaryTest, throwsWhenNoTagIsFreeForAnUnknownElement) {
    for (u32 i = 0; i != 0x8000; ++i) {
        primer.findOrGenerate(labelOf(static_cast<u16>(0x1000 + i)));
    }
    EXPECT_THROW(primer.tagForUnknown(LocalTag(u16{0x8000})), Exceptions::LimitExceeded);
}

TEST_F(PartitionDictionaryTest, keepsDynamicTagsThatItIsTold) {
    primer.keep(LocalTag(u16{0xFFFF}));
    primer.keep(LocalTag(u16{0x1101}));
    EXPECT_EQ(primer.find(LocalTag(u16{0xFFFF}), true), nullptr);
    EXPECT_EQ(primer.findOrGenerate(dynamic).value(), 0xFFFE);
    EXPECT_EQ(primer.findOrGenerate(number).value(), 0x1101);
    EXPECT_EQ(std::distance(primer.begin(), primer.end()), 2);
}

TEST_F(PartitionDictionaryTest, addsStaticTagsThatHaveNoEntry) {
    primer.add(LocalTag(u16{0x1102}), labelOf(0x77));
    for (int i = 0; i != 2; ++i) {
        for (const u16 tag : {u16{0x1101}, u16{0x1102}, u16{0x1150}, u16{0x8001}}) {
            primer.addStatic(LocalTag(tag));
        }
    }
    ASSERT_EQ(std::distance(primer.begin(), primer.end()), 2);
    EXPECT_EQ(*primer.find(LocalTag(u16{0x1101}), false), number);
    EXPECT_EQ(*primer.find(LocalTag(u16{0x1102}), false), labelOf(0x77));
}

} // namespace
} // namespace Corvid::Testing
