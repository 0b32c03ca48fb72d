#include "tests/metadata/MetadataSupport.h"

namespace Corvid::Testing {
namespace {

using namespace Metadata;

/// The order is that of the number in each set's InstanceUID.
class SerializationOrder : public MetadataTest {
protected:
    /// A set with strong references to others: each in an element of its own kind in turn.
    MetadataSet& node(u32 uuid, const std::vector<u32>& children = {}) {
        auto& set = makeSet(prefaceKey(), uuid);
        refer(set, childArray, children);
        return set;
    }

    void refer(MetadataSet& set, const Types::UniversalLabel& label,
               const std::vector<u32>& uuids) {
        if (uuids.empty()) {
            return;
        }
        auto& element = add<ReferenceCollectionElement>(set, label);
        for (const u32 uuid : uuids) {
            element.addUnverifiedReference(
                Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(uuid))));
        }
    }

    struct Order {
        std::vector<u32> uuids;
        std::size_t floating;
    };
    Order order(bool withFloating = true, bool structuralOnly = false) const {
        Templates::vector<const MetadataSet*> sets;
        Order result;
        result.floating = partition.calculateSerializationOrder(sets, withFloating, structuralOnly);
        for (const MetadataSet* set : sets) {
            const auto uuid = set->instanceUID();
            result.uuids.push_back(Types::readBigEndian<u32>(uuid.rawBuffer() + 12));
        }
        return result;
    }
    using Uuids = std::vector<u32>;
};

TEST_F(SerializationOrder, isEmptyForAnEmptyPartition) {
    EXPECT_EQ(order().uuids, Uuids{});
    EXPECT_EQ(order().floating, 0U);
}

TEST_F(SerializationOrder, isDepthFirstInTheOrderOfReferences) {
    node(5);
    node(4, {6});
    node(1, {3, 2});
    node(6);
    node(2);
    node(3, {5, 4});
    // All sets are Prefaces; the first in the partition, 5, is the one whose tree counts.
    EXPECT_EQ(order().uuids, (Uuids{5, 4, 1, 6, 2, 3}));
    EXPECT_EQ(order().floating, 5U);
}

TEST_F(SerializationOrder, startsAtThePrefaceWhereverItStands) {
    makeSet(otherKey(), 9);
    makeSet(otherKey(), 2);
    makeSet(otherKey(), 3);
    node(1, {3, 2});
    EXPECT_EQ(order().uuids, (Uuids{1, 3, 2, 9}));
    EXPECT_EQ(order().floating, 1U);
    EXPECT_EQ(order(false).uuids, (Uuids{1, 3, 2}));
    EXPECT_EQ(order(false).floating, 0U);
}

TEST_F(SerializationOrder, visitsSharedSetsAtTheirFirstReferenceAndSurvivesCycles) {
    node(1, {2, 3});
    node(2, {4, 1, 2});
    node(3, {4, 5, 2});
    node(4, {3, 1});
    node(5, {5});
    EXPECT_EQ(order().uuids, (Uuids{1, 2, 4, 3, 5}));
    EXPECT_EQ(order().floating, 0U);
}

TEST_F(SerializationOrder, followsReferencesInStoredOrderInvalidOnesIncluded) {
    auto& preface = makeSet(prefaceKey(), 1);
    refer(preface, childBatch, {5});
    auto& misplacedOne = dynamic_cast<ReferenceCollectionElement&>(
        preface.createInvalidElement(misplaced(childArray)));
    misplacedOne.addUnverifiedReference(
        Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(4))));
    auto& single = add<ReferenceElement>(preface, child);
    single.setUnverifiedReference(
        Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(3))));
    refer(preface, childArray, {2});
    for (const u32 uuid : {2U, 3U, 4U, 5U}) {
        makeSet(otherKey(), uuid);
    }
    EXPECT_EQ(order().uuids, (Uuids{1, 5, 4, 3, 2}));
}

TEST_F(SerializationOrder, doesNotFollowWeakNorDanglingReferences) {
    auto& preface = node(1, {77, 2});
    add<ReferenceElement>(preface, friendOf).set(&makeSet(otherKey(), 3));
    makeSet(otherKey(), 2);
    EXPECT_EQ(order().uuids, (Uuids{1, 2, 3}));
    EXPECT_EQ(order().floating, 1U);
}

TEST_F(SerializationOrder, takesADarkGroupInAtAnyReference) {
    auto& preface = makeSet(prefaceKey(), 1);
    makeSet(otherKey(), 4);
    partition.createDarkParsedGroup(keyOf(0x70)).setInstanceUID(uuidOf(3), 0x3C0A);
    makeSet(otherKey(), 2);
    add<ReferenceElement>(preface, friendOf)
        .setUnverifiedReference(
            Templates::auto_ptr<Types::Reference>(new Types::WeakReference(uuidOf(3))));
    refer(preface, childArray, {2});
    EXPECT_EQ(order().uuids, (Uuids{1, 3, 2, 4}));
    EXPECT_EQ(order().floating, 1U);
}

TEST_F(SerializationOrder, followsNoReferenceOfADarkGroup) {
    node(1, {3});
    makeSet(otherKey(), 2);
    auto& group = partition.createDarkParsedGroup(keyOf(0x70));
    group.setInstanceUID(uuidOf(3), 0x3C0A);
    for (auto* element :
         {&group.createElement(child, *dictionary->findSet(prefaceKey())->find(child)),
          &group.createInvalidElement(misplaced(child))}) {
        dynamic_cast<ReferenceElement&>(*element).setUnverifiedReference(
            Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(2))));
    }
    EXPECT_EQ(order().uuids, (Uuids{1, 3, 2}));
    EXPECT_EQ(order().floating, 1U);
}

TEST_F(SerializationOrder, followsNoReferenceThatDocumentsHaveNoPlaceFor) {
    auto& preface = makeSet(prefaceKey(), 1);
    makeSet(otherKey(), 3);
    makeSet(otherKey(), 2);
    dynamic_cast<ReferenceElement&>(preface.createElement(child, misplaced(child)))
        .setUnverifiedReference(
            Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(2))));
    EXPECT_EQ(order().uuids, (Uuids{1, 3, 2}));
    EXPECT_EQ(order().floating, 2U);
}

TEST_F(SerializationOrder, listsFurtherSetsWithOneInstanceUidAsFloating) {
    node(1, {2});
    makeSet(otherKey(), 2);
    makeSet(otherKey(), 2);
    EXPECT_EQ(order().uuids, (Uuids{1, 2, 2}));
    EXPECT_EQ(order().floating, 1U);
}

TEST_F(SerializationOrder, listsAllAsFloatingWithoutPreface) {
    makeSet(otherKey(), 2);
    partition.createDarkParsedGroup(keyOf(0x70)).setInstanceUID(uuidOf(3), 0x3C0A);
    makeSet(otherKey(), 1);
    EXPECT_EQ(order().uuids, (Uuids{2, 3, 1}));
    EXPECT_EQ(order().floating, 3U);
}

TEST_F(SerializationOrder, leavesOutSetsThatAreNotStructuralIfAsked) {
    node(1, {8, 2});
    makeSet(privateKey(), 8);
    makeSet(otherKey(), 2);
    makeSet(privateKey(), 9);
    makeSet(otherKey(), 3);
    EXPECT_EQ(order(true, true).uuids, (Uuids{1, 2, 3}));
    EXPECT_EQ(order(true, true).floating, 1U);
    EXPECT_EQ(order(false, true).uuids, (Uuids{1, 2}));
}

TEST_F(SerializationOrder, appendsToWhatIsThere) {
    const auto& preface = node(1);
    Templates::vector<const MetadataSet*> sets;
    sets.push_back(&preface);
    EXPECT_EQ(partition.calculateSerializationOrder(sets, true, false), 0U);
    EXPECT_EQ(sets.size(), 2U);
}

TEST_F(SerializationOrder, takesAChainOf200000Sets) {
    constexpr u32 length = 200000;
    for (u32 i = 0; i != length; ++i) {
        auto& set = makeSet(prefaceKey(), i);
        add<ReferenceElement>(set, child)
            .setUnverifiedReference(
                Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(i + 1))));
    }
    const auto [uuids, floating] = order();
    EXPECT_EQ(floating, 0U);
    ASSERT_EQ(uuids.size(), length);
    for (u32 i = 0; i != length; ++i) {
        ASSERT_EQ(uuids[i], i);
    }
}

} // namespace
} // namespace Corvid::Testing
