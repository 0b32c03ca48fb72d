#include "tests/types/Samples.h"

namespace Corvid::Testing {
namespace {

using namespace Types;

TEST(FromBytes, makesNothingForCollectionsAndNumbersWithoutType) {
    const Bytes bytes = {0, 0, 0, 0, 0, 0, 0, 0};
    for (unsigned number : {unsigned{Identifiers::Array}, unsigned{Identifiers::Batch}, 0U, 99U}) {
        EXPECT_FALSE(
            Factories::fromBytes(static_cast<Identifiers::Identifier>(number), viewOf(bytes)))
            << number;
    }
}

TEST(CollectionFromBytes, keepsItemsInOrder) {
    const Bytes bytes = {0, 0, 0, 3, 0, 0, 0, 2, 0, 7, 0, 9, 0, 8};
    for (const auto kind : {Identifiers::Array, Identifiers::Batch}) {
        const auto collection =
            Factories::collectionFromBytes(kind, Identifiers::UInt16, viewOf(bytes));
        ASSERT_TRUE(collection);
        ASSERT_EQ(collection->size(), 3U);
        EXPECT_EQ(collection->itemSize(), 2);
        const int expected[] = {7, 9, 8};
        for (u32 i = 0; i != 3; ++i) {
            EXPECT_EQ(dynamic_cast<const UInt16&>(collection->at(i)).value(), expected[i]);
        }
    }
}

TEST(CollectionFromBytes, makesItemsOfVariableSize) {
    const Bytes bytes = {0, 0, 0, 2, 0, 0, 0, 4, 0, 'a', 0, 'b', 0, 'c', 0, 0};
    const auto collection =
        Factories::collectionFromBytes(Identifiers::Batch, Identifiers::UTF16String, viewOf(bytes));
    ASSERT_TRUE(collection);
    EXPECT_EQ(textOf(dynamic_cast<const UTF16String&>(collection->at(0)).value()), u"ab");
    EXPECT_EQ(textOf(dynamic_cast<const UTF16String&>(collection->at(1)).value()), u"c");
    EXPECT_EQ(bytesOf(*collection), bytes);
}

TEST(CollectionFromBytes, refusesItemsThatDoNotFit) {
    const Bytes booleans = {0, 0, 0, 2, 0, 0, 0, 1, 1, 2};
    EXPECT_FALSE(
        Factories::collectionFromBytes(Identifiers::Array, Identifiers::Boolean, viewOf(booleans)));
    const Bytes shortVersions = {0, 0, 0, 1, 0, 0, 0, 9, 0, 1, 0, 2, 0, 3, 0, 4, 5};
    EXPECT_FALSE(Factories::collectionFromBytes(Identifiers::Array, Identifiers::ProductVersion,
                                                viewOf(shortVersions)));
    const Bytes hidden = {0, 0, 0, 2, 0, 0, 0, 2, 'a', 0, 0, 'b'};
    EXPECT_FALSE(Factories::collectionFromBytes(Identifiers::Array, Identifiers::ISO7String,
                                                viewOf(hidden)));
    const Bytes nested = {0, 0, 0, 1, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_FALSE(
        Factories::collectionFromBytes(Identifiers::Array, Identifiers::Array, viewOf(nested)));
}

TEST(ReadCollectionHead, refusesEveryPrefix) {
    const Bytes bytes = {0, 0, 0, 2, 0, 0, 0, 2, 1, 2, 3, 4};
    for (std::size_t size = 0; size != bytes.size(); ++size) {
        Factories::CollectionBytes head;
        EXPECT_FALSE(Factories::readCollectionHead({bytes.data(), size}, head)) << size;
    }
    Factories::CollectionBytes head;
    EXPECT_TRUE(Factories::readCollectionHead(viewOf(bytes), head));
    EXPECT_EQ(head.count, 2U);
    EXPECT_EQ(head.itemSize, 2U);
    EXPECT_EQ(head.items, bytes.data() + 8);
    EXPECT_EQ(head.item(1).data, bytes.data() + 10);
}

} // namespace
} // namespace Corvid::Testing
