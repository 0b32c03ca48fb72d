#include "tests/types/Samples.h"

namespace Corvid::Testing {
namespace {

using namespace Types;

Templates::auto_ptr<SimpleDataType> number(u16 value) { return UInt16(value).clone(); }

TEST(Collection, isEmptyAtFirstAndKeepsItsItemSize) {
    const Array array(2);
    EXPECT_EQ(array.size(), 0U);
    EXPECT_EQ(array.itemSize(), 2);
    EXPECT_EQ(bytesOf(array), (Bytes{0, 0, 0, 0, 0, 0, 0, 2}));
    EXPECT_EQ(bytesOf(Batch(0)), Bytes(8, 0));
}

TEST(Collection, appendsAndRemoves) {
    Batch batch(2);
    batch.add(number(1));
    batch.add(number(2));
    batch.add(number(3));
    batch.remove(1);
    EXPECT_EQ(bytesOf(batch), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 1, 0, 3}));
}

TEST(Collection, appendsNothingForANullPointer) {
    Array array(2);
    array.add({});
    EXPECT_EQ(array.size(), 0U);
}

TEST(Collection, givesItsBytesAfreshAfterAChange) {
    Array array(2);
    array.add(number(1));
    EXPECT_EQ(bytesOf(array), (Bytes{0, 0, 0, 1, 0, 0, 0, 2, 0, 1}));
    array.add(number(2));
    EXPECT_EQ(bytesOf(array), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 1, 0, 2}));
}

TEST(Collection, clonesItsItems) {
    Array array(2);
    array.add(number(5));
    const auto clone = array.clone();
    EXPECT_NE(&clone->at(0), &array.at(0));
    array.remove(0);
    EXPECT_EQ(clone->size(), 1U);
    EXPECT_EQ(dynamic_cast<const UInt16&>(clone->at(0)).value(), 5);
}

} // namespace
} // namespace Corvid::Testing
