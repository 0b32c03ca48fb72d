#include "tests/metadata/MetadataSupport.h"

namespace Corvid::Testing {
namespace {

using namespace Metadata;

class ReferencesTest : public MetadataTest {
protected:
    std::vector<MetadataSet*> targets(u32 uuid) const {
        const Targets found = partition.resolve(Types::WeakReference(uuidOf(uuid)));
        EXPECT_EQ(found.size(), static_cast<std::size_t>(found.end() - found.begin()));
        EXPECT_EQ(found.empty(), found.size() == 0);
        return {found.begin(), found.end()};
    }
    using Sets = std::vector<MetadataSet*>;
};

TEST_F(ReferencesTest, leadToNoneOneOrSeveralSetsInThePartitionsOrder) {
    EXPECT_EQ(targets(1), Sets{});
    auto& one = makeSet(otherKey(), 1);
    auto& first = makeSet(otherKey(), 2);
    auto& third = makeSet(prefaceKey(), 3);
    auto& second = makeSet(otherKey(), 2);
    auto& last = makeSet(privateKey(), 2);
    EXPECT_EQ(targets(1), Sets{&one});
    EXPECT_EQ(targets(2), (Sets{&first, &second, &last}));
    EXPECT_EQ(targets(3), Sets{&third});
    EXPECT_EQ(targets(4), Sets{});
    EXPECT_EQ(&partition.resolve(uuidOf(2)).front(), &first);
}

TEST_F(ReferencesTest, areAmbiguousWhereTwoSetsHaveOneInstanceUid) {
    EXPECT_FALSE(partition.isAmbiguous());
    makeSet(otherKey(), 1);
    auto& second = makeSet(otherKey(), 2);
    EXPECT_FALSE(partition.isAmbiguous());
    auto& third = makeSet(prefaceKey(), 2);
    EXPECT_TRUE(partition.isAmbiguous());
    for (auto* const set : {&second, &third}) {
        dynamic_cast<SimpleElement&>(*set->find(instanceUID())).set({});
    }
    EXPECT_FALSE(partition.isAmbiguous()) << "two sets without any are no two of one";
}

TEST_F(ReferencesTest, followSetsThatAreMadeLater) {
    EXPECT_EQ(targets(7), Sets{});
    auto& set = makeSet(otherKey(), 7);
    EXPECT_EQ(targets(7), Sets{&set});
    auto& made = partition.createMetadataSet(otherKey());
    const Targets found = partition.resolve(made.instanceUID());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(&found.front(), &made);
}

TEST_F(ReferencesTest, followEveryChangeOfAnInstanceUid) {
    auto& set = makeSet(otherKey(), 7);
    EXPECT_EQ(targets(7), Sets{&set});
    auto& identifier = dynamic_cast<SimpleElement&>(*set.find(instanceUID()));
    identifier.set(uuidOf(8).clone());
    EXPECT_EQ(targets(7), Sets{});
    EXPECT_EQ(targets(8), Sets{&set});
    const auto nine = uuidOf(9);
    ASSERT_TRUE(identifier.parse({nine.rawBuffer(), 16}));
    EXPECT_EQ(targets(8), Sets{});
    EXPECT_EQ(targets(9), Sets{&set});
    ASSERT_FALSE(identifier.parse({nine.rawBuffer(), 15}));
    EXPECT_EQ(targets(9), Sets{&set});
    identifier.set({});
    EXPECT_EQ(targets(9), Sets{});
    EXPECT_FALSE(set.hasInstanceUID());
}

TEST_F(ReferencesTest, doNotLeadToSetsWithoutInstanceUid) {
    partition.createEmptyMetadataSet(otherKey(), *dictionary->findSet(otherKey()));
    auto& second = partition.createDarkParsedGroup(keyOf(0x70));
    second.createInvalidElement(unknown(0x3C0A), 0x3C0A).parse({uuidOf(0).rawBuffer(), 16});
    EXPECT_EQ(targets(0), Sets{});
    auto& zero = makeSet(otherKey(), 0);
    EXPECT_EQ(targets(0), Sets{&zero});
}

TEST_F(ReferencesTest, areFoundAmongMany) {
    Sets made;
    constexpr u32 count = 5000;
    for (u32 i = 0; i != count; ++i) {
        made.push_back(&makeSet(otherKey(), i % (count / 2)));
    }
    for (u32 i = 0; i != count / 2; ++i) {
        ASSERT_EQ(targets(i), (Sets{made[i], made[i + count / 2]})) << i;
    }
}

/// Identifiers that a plain multiplying hash of their two halves gives one value: to look one up
/// among them in a table would cost as much as there are.
TEST_F(ReferencesTest, areFoundAmongManyThatAreMadeToCollide) {
    constexpr Types::u64 factor = 0x9E3779B97F4A7C15U;
    constexpr Types::u64 inverse = 0xF1DE83E19937733DU;
    static_assert(factor * inverse == 1);
    const auto colliding = [](Types::u64 number) {
        const Types::u64 second = number * 0x9876543211U;
        const Types::u64 halves[] = {(12345 - second) * inverse ^ second >> 29, second};
        return Types::UUID(
            Types::ByteView{reinterpret_cast<const Types::u8*>(halves), sizeof halves});
    };
    constexpr u32 count = 200000;
    for (u32 i = 0; i != count; ++i) {
        dynamic_cast<SimpleElement&>(*makeSet(otherKey(), 0).find(instanceUID()))
            .set(colliding(i).clone());
    }
    for (u32 i = 0; i != count; ++i) {
        ASSERT_EQ(partition.resolve(colliding(i)).size(), 1U) << i;
    }
}

} // namespace
} // namespace Corvid::Testing
