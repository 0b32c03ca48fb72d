#include "host/types/Strings.h"
#include "tests/metadata/MetadataSupport.h"

#include <algorithm>

namespace Corvid::Testing {
namespace {

using namespace Metadata;
using MetadataSetTest = MetadataTest;

template <class Visitor, class Set> class Noting : public Visitor {
public:
    void visit(Set& set) override { seen.push_back(&set); }
    std::vector<Set*> seen;
};

TEST_F(MetadataSetTest, isVisitedWithItself) {
    auto& set = partition.createMetadataSet(prefaceKey());
    Noting<Visitors::NonConstMetadataSetVisitor, MetadataSet> changing;
    set.accept(changing);
    EXPECT_EQ(changing.seen, std::vector<MetadataSet*>{&set});
    Noting<Visitors::MetadataSetVisitor, const MetadataSet> constant;
    static_cast<const MetadataSet&>(set).accept(constant);
    EXPECT_EQ(constant.seen, std::vector<const MetadataSet*>{&set});
}

TEST_F(MetadataSetTest, listsItsElementsInTheOrderOfTheirLabels) {
    auto& set = makeSet(prefaceKey(), 1);
    for (const auto& label : {dynamic, number, childArray, text}) {
        add<Element>(set, label);
    }
    const std::vector<Types::UniversalLabel> expected = {instanceUID(), number, text, childArray,
                                                         dynamic};
    std::vector<Types::UniversalLabel> listed;
    for (const auto& entry : set) {
        listed.push_back(entry.first);
        EXPECT_EQ(set.find(entry.first), entry.second);
    }
    EXPECT_EQ(listed, expected);
}

TEST_F(MetadataSetTest, findsAnElementWhateverTheVersionOfItsLabel) {
    auto& set = makeSet(prefaceKey(), 1);
    auto& element = add<Element>(set, number);
    EXPECT_EQ(set.find(labelOf(1, 0x0D)), &element);
    EXPECT_EQ(set.find(text), nullptr);
}

TEST_F(MetadataSetTest, listsInvalidElementsInStoredOrder) {
    auto& set = makeSet(prefaceKey(), 1);
    std::vector<Element*> expected = {&set.createInvalidElement(unknown(0x9000), 0x9000)};
    add<Element>(set, number);
    expected.push_back(&set.createInvalidElement(misplaced(otherOnly)));
    expected.push_back(&set.createInvalidElement(misplaced(number), 0x1101));
    EXPECT_EQ(std::vector<Element*>(set.invalidBegin(), set.invalidEnd()), expected);
    EXPECT_EQ(expected[0]->localTag(), 0x9000);
    EXPECT_EQ(expected[0]->position(), 1);
    EXPECT_EQ(expected[1]->localTag(), 0);
    EXPECT_EQ(expected[1]->position(), 3);
    EXPECT_EQ(set.countValues(), 1U);
}

TEST_F(MetadataSetTest, serialisesItsPropertiesInStoredOrderUnderTheirTags) {
    auto& set = partition.createEmptyMetadataSet(prefaceKey(), *dictionary->findSet(prefaceKey()));
    set.setBerLength(4);
    auto& primer = partition.partitionDictionary();
    primer.add(Types::LocalTag(u16{0xABCD}), labelOf(2, 7));

    ASSERT_TRUE(
        set.createInvalidElement(unknown(0x9000), 0x9000).parse(viewOf({0xCA, 0xFE, 0xEE})));
    ASSERT_TRUE(add(set, text, 0x1102).parse(viewOf({0, 'a', 0, 0}))); // a static tag is kept
    add(set, labelOf(0x20));                                           // has no value
    add(set, instanceUID()).set(uuidOf(0x01020304).clone());
    ASSERT_TRUE(
        set.createInvalidElement(misplaced(text)).parse(viewOf({0, 'b'}))); // the primer's tag
    ASSERT_TRUE(add(set, number).parse(viewOf({0x12, 0x34})));
    ASSERT_TRUE(add(set, dynamic).parse(viewOf({0, 0, 0, 5})));
    ASSERT_TRUE(set.createInvalidElement(unknown(0x0000), 0).parse(viewOf({})));
    ASSERT_TRUE(add<ArrayElement>(set, numbers).parse(viewOf({0, 0, 0, 1, 0, 0, 0, 2, 0, 9})));

    // clang-format off
    const Bytes expected = {
        0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
        0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00,
        0x83, 0x00, 0x00, 0x49,
        0x90, 0x00, 0x00, 0x03, 0xCA, 0xFE, 0xEE,
        0x11, 0x02, 0x00, 0x04, 0x00, 'a', 0x00, 0x00,
        0x3c, 0x0a, 0x00, 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4,
        0xAB, 0xCD, 0x00, 0x02, 0x00, 'b',
        0x11, 0x01, 0x00, 0x02, 0x12, 0x34,
        0xFF, 0xFF, 0x00, 0x04, 0x00, 0x00, 0x00, 0x05,
        0x00, 0x00, 0x00, 0x00,
        0x11, 0x07, 0x00, 0x0A, 0, 0, 0, 1, 0, 0, 0, 2, 0x00, 0x09};
    // clang-format on
    EXPECT_EQ(bytesOf(set, partition), expected);
    EXPECT_EQ(set.countValues(), 8U);
    ASSERT_NE(primer.find(Types::LocalTag(u16{0xFFFF}), false), nullptr);
    EXPECT_EQ(*primer.find(Types::LocalTag(u16{0xFFFF}), false), dynamic);
}

TEST_F(MetadataSetTest, arrangesElementsAnewInThePlacesThatTheyHad) {
    auto& set = makeSet(prefaceKey(), 1);
    std::vector<Element*> made;
    for (const u8 value : {u8{0}, u8{1}, u8{2}, u8{3}, u8{4}}) {
        made.push_back(&set.createInvalidElement(misplaced(otherOnly)));
        ASSERT_TRUE(made.back()->parse(viewOf({value})));
    }
    const auto order = [&](std::initializer_list<std::size_t> places) {
        Templates::vector<Element*> elements;
        for (const std::size_t place : places) {
            elements.push_back(made[place]);
        }
        return elements;
    };
    const auto listed = [&] {
        return Templates::vector<Element*>(set.invalidBegin(), set.invalidEnd());
    };
    set.arrange({});
    EXPECT_EQ(listed(), order({0, 1, 2, 3, 4}));
    set.arrange(order({4, 1, 3}));
    EXPECT_EQ(listed(), order({0, 4, 2, 1, 3}));
    const Bytes bytes = bytesOf(set, partition);
    std::vector<u8> values;
    for (std::size_t at = 16 + 4 + 20; at < bytes.size(); at += 5) {
        values.push_back(bytes.at(at + 4)); // after tag and length
    }
    EXPECT_EQ(values, (std::vector<u8>{0, 4, 2, 1, 3}));
    EXPECT_EQ(set.createInvalidElement(misplaced(otherOnly)).position(), 6U);
}

TEST_F(MetadataSetTest, keepsTheOrderOfMoreThan65536Properties) {
    auto& set = makeSet(prefaceKey(), 1);
    constexpr u32 count = 70000;
    for (u32 i = 0; i != count; ++i) {
        const u16 tag = static_cast<u16>(0x8000 + i % 0x7000);
        ASSERT_TRUE(set.createInvalidElement(unknown(tag), tag).parse({}));
    }
    const Bytes bytes = bytesOf(set, partition);
    const std::size_t head = 16 + 4 + 20;
    ASSERT_EQ(bytes.size(), head + 4 * count);
    for (u32 i = 0; i != count; ++i) {
        ASSERT_EQ(Types::readBigEndian<u16>(bytes.data() + head + 4 * i), 0x8000 + i % 0x7000) << i;
    }
}

TEST_F(MetadataSetTest, refusesAValueBeyondTheLengthFieldBeforeAnyByteIsWritten) {
    auto& set = makeSet(prefaceKey(), 1);
    auto& element = add(set, text);
    const auto textOfSize = [](std::size_t units) {
        const Utf16Text value(units, u16{'x'});
        return Templates::auto_ptr<Types::SimpleDataType>(new Types::UTF16String(value.c_str()));
    };
    element.set(textOfSize(0x7FFF));
    EXPECT_EQ(bytesOf(set, partition).size(), 16U + 4 + 20 + 4 + 0xFFFE);
    for (const std::size_t units : {0x8000U, 0x8001U, 0x10000U}) {
        element.set(textOfSize(units));
        DataIO::Memory::MemoryDataSink sink;
        try {
            set.serialize(sink, partition.partitionDictionary());
            ADD_FAILURE() << units;
        } catch (const Exceptions::LimitExceeded& problem) {
            const std::string message = Platform::toUtf8(problem.message());
            EXPECT_NE(message.find(std::to_string(2 * units) + " bytes"), std::string::npos)
                << message;
            EXPECT_NE(message.find(Platform::toUtf8(text.toString())), std::string::npos)
                << message;
        }
        EXPECT_EQ(sink.serializedSize(), 0U);
    }
}

TEST_F(MetadataSetTest, refusesCollectionsBeyondTheLengthField) {
    auto& set = makeSet(prefaceKey(), 1);
    auto& values = add<ArrayElement>(set, numbers);
    values.set(Templates::auto_ptr<Types::Collection>(new Types::Array(2)));
    for (int i = 0; i != 0x8000; ++i) {
        values.add(Types::UInt16(1).clone());
    }
    DataIO::Memory::MemoryDataSink sink;
    EXPECT_THROW(set.serialize(sink, partition.partitionDictionary()), Exceptions::LimitExceeded);

    auto& other = makeSet(prefaceKey(), 2);
    auto& references = add<ReferenceArrayElement>(other, childArray);
    for (int i = 0; i != 0x1000; ++i) {
        references.add(&set);
    }
    EXPECT_THROW(other.serialize(sink, partition.partitionDictionary()), Exceptions::LimitExceeded);
    EXPECT_EQ(sink.serializedSize(), 0U);
}

TEST_F(MetadataSetTest, hasAnInstanceUidOnlyIfTheValueHasItsSize) {
    auto& group = partition.createDarkParsedGroup(privateKey());
    group.setInstanceUID(uuidOf(5), 0x3C0A);
    EXPECT_TRUE(group.hasInstanceUID());
    auto& element = dynamic_cast<SimpleElement&>(*group.find(instanceUID()));
    element.set(Types::UInt16(7).clone());
    EXPECT_FALSE(group.hasInstanceUID());
    EXPECT_EQ(group.instanceUID(), Types::UUID());
    EXPECT_TRUE(partition.resolve(uuidOf(5)).empty());
    element.set({});
    EXPECT_FALSE(group.hasInstanceUID());
}

TEST_F(MetadataSetTest, takesAnotherKeyOfItsClassOnly) {
    auto& set = makeSet(prefaceKey(), 1);
    auto bytes = prefaceKey().bytes();
    bytes[5] = 0x13;
    bytes[7] = 0x42;
    set.setKey(KLV::Key(bytes));
    EXPECT_EQ(set.key(), KLV::Key(bytes));
    bytes[14] ^= 1;
    EXPECT_THROW(set.setKey(KLV::Key(bytes)), Exceptions::InvalidArgument);
    EXPECT_EQ(set.key()[7], 0x42);
}

TEST_F(MetadataSetTest, assignsTheTagsOfPropertiesWithAValue) {
    auto& primer = partition.partitionDictionary();
    auto& set = makeSet(prefaceKey(), 1);
    add(set, number, 0x9000).set(Types::UInt16(1).clone());
    add(set, dynamic).set(Types::UInt32(1).clone());
    add(set, text);
    set.createInvalidElement(misplaced(otherOnly)).parse(viewOf({7}));
    set.createInvalidElement(unknown(0x1102), 0x1102).parse(viewOf({1}));
    set.createInvalidElement(unknown(0x7777), 0x7777).parse(viewOf({1}));
    set.assignTags(primer);
    std::vector<u16> tags;
    for (const auto& [tag, label] : primer) {
        tags.push_back(tag.value());
    }
    // Nothing is known of 0x9000 and 0x7777, the bytes of 0x1102 fit no text.
    EXPECT_EQ(tags, (std::vector<u16>{0x3C0A, 0xFFFF, 0x1201, 0x1102}));
    const Bytes before = bytesOf(set, partition);
    set.assignTags(primer);
    EXPECT_EQ(bytesOf(set, partition), before);
    EXPECT_EQ(std::distance(primer.begin(), primer.end()), 4);
}

} // namespace
} // namespace Corvid::Testing
