#include "editing/MergeCopies.h"

#include "tests/support/Model.h"

#include <gtest/gtest.h>

using namespace Corvid;
using namespace Corvid::Testing;
using Editing::mergeCopies;

namespace {

/// A property of a local set with a tag below 0x8000, as bytes.
std::string property(Types::u16 tag, const std::string& value) {
    return std::string{static_cast<char>(tag >> 8), static_cast<char>(tag), 0,
                       static_cast<char>(value.size())} +
           value;
}

/// The InstanceUID of a dark set.
std::string identified(char instance) { return property(0x3C0A, std::string(15, '\0') + instance); }

class MergeCopies : public ::testing::Test {
protected:
    /// A track with a name.
    Model::Set& track(Types::u8 instance, const char* name) {
        auto& set = model_.set("TimelineTrack", instance);
        model_.value(set, "TrackName", Types::UTF16String(Platform::fromUtf8(name).c_str()));
        return set;
    }
    void dark(const std::string& bytes, unsigned char berLength = 4) {
        model_.darkSet(Model::darkKey(), berLength, bytes);
    }
    std::vector<const Model::Set*> sets() const {
        return {model_.partition.begin(), model_.partition.end()};
    }
    std::ptrdiff_t darkSets() const {
        return std::distance(model_.partition.darkBegin(), model_.partition.darkEnd());
    }

    Model model_;
};

TEST_F(MergeCopies, leavesSetsOfDifferentIdentifiersAlone) {
    track(1, "a");
    track(2, "a");
    dark(identified(3));
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 0U);
    EXPECT_TRUE(merged.unequal.empty());
    EXPECT_EQ(model_.partition.size(), 2U);
    EXPECT_EQ(darkSets(), 1);
}

TEST_F(MergeCopies, keepsTheFirstOfEqualSets) {
    const auto& preface = model_.set("Preface", 1);
    const auto& first = track(2, "a");
    track(2, "a");
    const auto& other = track(3, "a");
    track(2, "a");
    model_.set("Preface", 1);
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 3U);
    EXPECT_TRUE(merged.unequal.empty());
    EXPECT_EQ(sets(), (std::vector<const Model::Set*>{&preface, &first, &other}));
    EXPECT_EQ(model_.partition.resolve(uuid(2)).size(), 1U);
}

TEST_F(MergeCopies, keepsUnequalSetsAndNamesThem) {
    const auto& first = track(1, "a");
    const auto& second = track(1, "b");
    track(1, "a");
    track(1, "b");
    const auto& preface = model_.set("Preface", 1);
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 2U);
    EXPECT_EQ(sets(), (std::vector<const Model::Set*>{&first, &second, &preface}));
    ASSERT_EQ(merged.unequal.size(), 2U);
    EXPECT_EQ(merged.unequal[0].set, "TimelineTrack");
    EXPECT_EQ(merged.unequal[0].identifier, uuid(1));
    EXPECT_EQ(merged.unequal[1].set, "Preface");
}

TEST_F(MergeCopies, takesLengthOctetsForAPartOfTheSet) {
    track(1, "a");
    track(1, "a").setBerLength(9);
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 0U);
    EXPECT_EQ(merged.unequal.size(), 1U);
}

TEST_F(MergeCopies, keepsAsManyAsAreExpected) {
    for (const char* name : {"a", "b", "b", "a", "a"}) {
        track(1, name);
        dark(property(0x0101, name) + identified(1));
    }
    const auto merged = mergeCopies(model_.partition, {{uuid(1), {2, 1}}});
    EXPECT_EQ(merged.equal, 1U + 2U) << "of those equal to the first";
    EXPECT_EQ(model_.partition.size(), 4U);
    EXPECT_EQ(darkSets(), 3);
    ASSERT_EQ(merged.unequal.size(), 2U);
    EXPECT_TRUE(merged.unequal[0].isExpected);
    EXPECT_TRUE(merged.unequal[1].isExpected);
}

TEST_F(MergeCopies, doesNotCompareSetsWithoutIdentifier) {
    for (int i = 0; i != 2; ++i) {
        const auto& definition = *track(0, "a").metaMetadataSet();
        model_.partition.createEmptyMetadataSet(definition.key(), definition);
    }
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 1U) << "those with an identifier of zeros";
    EXPECT_EQ(model_.partition.size(), 3U);
}

TEST_F(MergeCopies, mergesDarkSetsThatHaveAnIdentifier) {
    dark(property(0x0101, "x") + identified(1));
    dark(identified(1));
    dark(property(0x0101, "x") + identified(1));
    dark(identified(1), 9);
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 1U);
    EXPECT_EQ(darkSets(), 3);
    ASSERT_EQ(merged.unequal.size(), 2U);
    EXPECT_EQ(merged.unequal[0].set, "06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00");
    EXPECT_EQ(merged.unequal[0].identifier, uuid(1));
}

TEST_F(MergeCopies, findsTheIdentifierOfADarkSetByThePrimer) {
    model_.partition.partitionDictionary().add(
        Types::LocalTag(0x7001), Metadata::Structural::StructuralMetadataULs::instanceUID());
    for (int i = 0; i != 2; ++i) {
        dark(property(0x7001, std::string(16, 'u')));
    }
    EXPECT_EQ(mergeCopies(model_.partition).equal, 1U);
}

TEST_F(MergeCopies, leavesDarkSetsWithoutIdentifierAlone) {
    auto noLocalSet = Model::darkKey();
    noLocalSet[5] = 0x04;
    for (int i = 0; i != 2; ++i) {
        dark("");
        dark("no properties");
        dark(property(0x0101, std::string(16, 'u')));
        dark(property(0x3C0A, "short"));
        dark(identified(1) + "rest");
        model_.darkSet(noLocalSet, 4, identified(1));
    }
    const auto merged = mergeCopies(model_.partition);
    EXPECT_EQ(merged.equal, 0U);
    EXPECT_TRUE(merged.unequal.empty());
    EXPECT_EQ(darkSets(), 12);
}

/// A file has as many of these, each for itself.
TEST_F(MergeCopies, leavesDarkSetsAloneThatNobodyCanTakeApart) {
    auto berLengths = Model::darkKey();
    berLengths[5] = 0x13;
    const std::string uid = std::string("\x3C\x0A", 2);
    const std::string mixed =
        uid + "\x10" + std::string(16, 'u') + std::string("\x01\x01\x81\x01x", 5);
    const auto knownClass = model_.set("TimelineTrack", 9).key().bytes();
    for (int i = 0; i != 2; ++i) {
        model_.darkSet(knownClass, 4, identified(1));
        model_.darkSet(berLengths, 4, mixed);
    }
    EXPECT_EQ(mergeCopies(model_.partition).equal, 0U);
    EXPECT_EQ(darkSets(), 4);
}

TEST_F(MergeCopies, copesWithManyCopies) {
    for (int i = 0; i != 20000; ++i) {
        track(1, "a");
        dark(identified(2));
    }
    EXPECT_EQ(mergeCopies(model_.partition).equal, 2 * 19999U);
    EXPECT_EQ(model_.partition.size(), 1U);
    EXPECT_EQ(darkSets(), 1);
}

} // namespace
