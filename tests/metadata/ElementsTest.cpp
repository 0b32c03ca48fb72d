#include "tests/metadata/MetadataSupport.h"

namespace Corvid::Testing {
namespace {

using namespace Metadata;

#define CORVID_NOTE(Class)                                                                         \
    void visit(const Class&) override { called += #Class " "; }
#define CORVID_NOTE_NON_CONST(Class)                                                               \
    void visit(Class&) override { called += #Class " "; }
#define CORVID_KINDS(Note)                                                                         \
    Note(ReferenceBatchElement) Note(ReferenceArrayElement) Note(ReferenceElement)                 \
        Note(BatchElement) Note(ArrayElement) Note(SimpleElement)

class Recorder : public Visitors::ElementVisitor {
public:
    CORVID_KINDS(CORVID_NOTE)
    std::string called;
};
class NonConstRecorder : public Visitors::NonConstElementVisitor {
public:
    CORVID_KINDS(CORVID_NOTE_NON_CONST)
    std::string called;
};

using Elements = MetadataTest;

TEST_F(Elements, areOfTheKindThatTheirDefinitionAsksFor) {
    auto& set = partition.createMetadataSet(prefaceKey());
    const std::pair<Types::UniversalLabel, const char*> cases[] = {
        {number, "SimpleElement "},
        {text, "SimpleElement "},
        {child, "ReferenceElement "},
        {friendOf, "ReferenceElement "},
        {childArray, "ReferenceArrayElement "},
        {friendBatch, "ReferenceBatchElement "},
        {childBatch, "ReferenceBatchElement "},
        {numbers, "ArrayElement "},
        {labels, "BatchElement "},
        {instanceUID(), "SimpleElement "}};
    for (const auto& [label, kind] : cases) {
        Element* element = set.find(label);
        ASSERT_NE(element, nullptr) << kind;
        Recorder recorder;
        static_cast<const Element*>(element)->accept(recorder);
        EXPECT_EQ(recorder.called, kind);
        NonConstRecorder changing;
        element->accept(changing);
        EXPECT_EQ(changing.called, kind);
    }
}

TEST_F(Elements, ofUnknownAndMisplacedAttributesHaveTheirKindToo) {
    const std::pair<Element::Attribute, const char*> cases[] = {
        {unknown(0x8001), "SimpleElement "},
        {misplaced(numbers), "ArrayElement "},
        {misplaced(friendBatch), "ReferenceBatchElement "}};
    for (const auto& [attribute, kind] : cases) {
        const auto element = createElement(attribute);
        EXPECT_TRUE(element->isSkipped());
        EXPECT_EQ(element->metaAttribute().get(), attribute.get());
        Recorder recorder;
        static_cast<const Element&>(*element).accept(recorder);
        EXPECT_EQ(recorder.called, kind);
    }
}

struct ParseCase {
    const char* name;
    Types::UniversalLabel label;
    Bytes fits;
    Bytes doesNot;
};
void PrintTo(const ParseCase& c, std::ostream* out) { *out << c.name; }

std::string nameOfParse(const ::testing::TestParamInfo<ParseCase>& info) { return info.param.name; }

class ElementsFromBytes : public MetadataTest, public ::testing::WithParamInterface<ParseCase> {};

TEST_P(ElementsFromBytes, giveThemBackAndStayAsTheyAreWhereBytesDoNotFit) {
    auto& set = partition.createMetadataSet(prefaceKey());
    Element& element = *set.find(GetParam().label);
    EXPECT_TRUE(element.isSkipped());
    EXPECT_FALSE(element.parse(viewOf(GetParam().doesNot)));
    EXPECT_TRUE(element.isSkipped());
    ASSERT_TRUE(element.parse(viewOf(GetParam().fits)));
    EXPECT_FALSE(element.isSkipped());
    EXPECT_FALSE(element.parse(viewOf(GetParam().doesNot)));
    DataIO::Memory::MemoryDataSink sink;
    element.serialize(sink);
    EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()), GetParam().fits);
    EXPECT_EQ(element.serializedSize(), GetParam().fits.size());
}

INSTANTIATE_TEST_SUITE_P(
    , ElementsFromBytes,
    ::testing::Values(
        ParseCase{"Simple", number, {1, 2}, {1}},
        ParseCase{"Text", text, {0, 'a', 0, 0}, {0, 'a', 0}},
        ParseCase{"Reference", child, Bytes(16, 7), Bytes(15, 7)},
        ParseCase{"References",
                  childArray,
                  {0, 0, 0, 1, 0, 0, 0, 16, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16},
                  {0, 0, 0, 1, 0, 0, 0, 4, 1, 2, 3, 4}},
        ParseCase{
            "NoReferences", friendBatch, {0, 0, 0, 0, 0, 0, 0, 16}, {0, 0, 0, 1, 0, 0, 0, 16}},
        ParseCase{"NoReferencesOfSizeZero", friendBatch, Bytes(8, 0), Bytes(7, 0)},
        ParseCase{
            "Collection", numbers, {0, 0, 0, 1, 0, 0, 0, 2, 1, 2}, {0, 0, 0, 1, 0, 0, 0, 1, 1}},
        ParseCase{"EmptyCollection", labels, Bytes(8, 0), {}},
        ParseCase{"EmptyCollectionOfSize16", labels, {0, 0, 0, 0, 0, 0, 0, 16}, Bytes(9, 0)}),
    nameOfParse);

TEST_F(Elements, withSimpleValuesCanKeepWhatIsPresent) {
    auto& element =
        dynamic_cast<SimpleElement&>(*partition.createMetadataSet(prefaceKey()).find(number));
    element.set(Types::UInt16(1).clone(), true);
    element.set(Types::UInt16(2).clone(), true);
    EXPECT_EQ(dynamic_cast<const Types::UInt16&>(*element.value()).value(), 1);
    element.set(Types::UInt16(3).clone(), false);
    EXPECT_EQ(dynamic_cast<const Types::UInt16&>(*element.value()).value(), 3);
    element.set({});
    EXPECT_TRUE(element.isSkipped());
    EXPECT_EQ(element.value(), nullptr);
}

TEST_F(Elements, withReferencesMakeTheKindOfTheirDefinition) {
    auto& set = partition.createMetadataSet(prefaceKey());
    auto& target = makeSet(otherKey(), 9);
    const std::pair<Types::UniversalLabel, bool> singles[] = {{child, true}, {friendOf, false}};
    for (const auto& [label, strong] : singles) {
        auto& element = dynamic_cast<ReferenceElement&>(*set.find(label));
        element.set(&target);
        EXPECT_EQ(element.value()->uuid(), uuidOf(9));
        EXPECT_EQ(element.value()->isStrong(), strong);
    }
    const std::pair<Types::UniversalLabel, bool> many[] = {{childArray, true},
                                                           {friendBatch, false}};
    for (const auto& [label, strong] : many) {
        auto& element = dynamic_cast<ReferenceCollectionElement&>(*set.find(label));
        element.add(&target);
        ASSERT_EQ(element.size(), 1U);
        EXPECT_EQ(element.at(0).uuid(), uuidOf(9));
        EXPECT_EQ(element.at(0).isStrong(), strong);
    }
}

TEST_F(Elements, withReferencesRefuseToReferToNoSetAndStayAsTheyAre) {
    auto& set = partition.createMetadataSet(prefaceKey());
    auto& one = dynamic_cast<ReferenceElement&>(*set.find(child));
    auto& many = dynamic_cast<ReferenceCollectionElement&>(*set.find(childArray));
    EXPECT_THROW(one.set(nullptr), Exceptions::InvalidArgument);
    EXPECT_THROW(many.add(nullptr), Exceptions::InvalidArgument);
    EXPECT_TRUE(one.isSkipped());
    EXPECT_TRUE(many.isSkipped());
    one.set(&set);
    EXPECT_THROW(one.set(nullptr), Exceptions::InvalidArgument);
    EXPECT_EQ(one.value()->uuid(), set.instanceUID());
}

TEST_F(Elements, refuseToBeWithoutAttribute) {
    auto& set = partition.createMetadataSet(prefaceKey());
    EXPECT_THROW(createElement({}), Exceptions::InvalidArgument);
    EXPECT_THROW(SimpleElement({}), Exceptions::InvalidArgument);
    EXPECT_THROW(ReferenceBatchElement({}), Exceptions::InvalidArgument);
    EXPECT_THROW(set.createElement(number, {}), Exceptions::InvalidArgument);
    EXPECT_THROW(set.createElement(instanceUID(), {}), Exceptions::InvalidArgument);
    EXPECT_THROW(set.createInvalidElement({}), Exceptions::InvalidArgument);
    EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
}

TEST_F(Elements, withValuesRefuseAnItemWhereThereIsNoCollection) {
    auto& set = partition.createMetadataSet(prefaceKey());
    auto& element = dynamic_cast<CollectionElement&>(*set.find(numbers));
    EXPECT_THROW(element.add(Templates::auto_ptr<Types::SimpleDataType>(new Types::UInt16(1))),
                 Exceptions::InvalidArgument);
    EXPECT_TRUE(element.isSkipped());
}

TEST_F(Elements, withReferencesKeepAReferenceThatNothingIsToReplace) {
    auto& set = partition.createMetadataSet(prefaceKey());
    auto& element = dynamic_cast<ReferenceCollectionElement&>(*set.find(childArray));
    element.add(&set);
    element.replace(0, {});
    EXPECT_EQ(element.at(0).uuid(), set.instanceUID());
}

TEST_F(Elements, withReferencesArePresentOnceOneWasAddedAndRemoved) {
    auto& set = partition.createMetadataSet(prefaceKey());
    auto& element = dynamic_cast<ReferenceCollectionElement&>(*set.find(childArray));
    EXPECT_TRUE(element.isSkipped());
    element.addUnverifiedReference(
        Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(1))));
    element.remove(0);
    EXPECT_EQ(element.size(), 0U);
    EXPECT_FALSE(element.isSkipped());
    EXPECT_EQ(element.serializedSize(), 8U);
}

TEST_F(Elements, withReferencesReplaceOneInItsPlace) {
    auto& element = dynamic_cast<ReferenceCollectionElement&>(
        *partition.createMetadataSet(prefaceKey()).find(childArray));
    const auto to = [](u32 target) {
        return Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(target)));
    };
    for (const u32 target : {1U, 2U, 3U}) {
        element.addUnverifiedReference(to(target));
    }
    element.replace(1, to(9));
    EXPECT_EQ(element.at(0).uuid(), uuidOf(1));
    EXPECT_EQ(element.at(1).uuid(), uuidOf(9));
    EXPECT_EQ(element.at(2).uuid(), uuidOf(3));
}

TEST_F(Elements, withReferencesAppendNothingForANullPointer) {
    auto& element = dynamic_cast<ReferenceCollectionElement&>(
        *partition.createMetadataSet(prefaceKey()).find(childArray));
    element.addUnverifiedReference({});
    EXPECT_EQ(element.size(), 0U);
    EXPECT_TRUE(element.isSkipped());
}

TEST_F(Elements, withReferencesGiveTheirSizeOnceTheyHoldOne) {
    auto& element = dynamic_cast<ReferenceCollectionElement&>(
        *partition.createMetadataSet(prefaceKey()).find(childArray));
    ASSERT_TRUE(element.parse(viewOf(Bytes(8, 0))));
    element.addUnverifiedReference(
        Templates::auto_ptr<Types::Reference>(new Types::StrongReference(uuidOf(1))));
    DataIO::Memory::MemoryDataSink sink;
    element.serialize(sink);
    EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + 8), (Bytes{0, 0, 0, 1, 0, 0, 0, 16}));
}

TEST_F(Elements, withCollectionsHaveNoBytesWhereItemsDifferInSize) {
    auto& element =
        dynamic_cast<CollectionElement&>(*partition.createMetadataSet(prefaceKey()).find(numbers));
    for (const int itemSize : {0, 1, 3}) {
        element.set(Templates::auto_ptr<Types::Collection>(new Types::Array(itemSize)));
        EXPECT_EQ(element.serializedSize(), 8U); // no item contradicts it
        element.add(Types::UInt16(1).clone());
        try {
            element.serializedSize();
            ADD_FAILURE() << "no exception";
        } catch (const Exceptions::InvalidLength& e) {
            EXPECT_EQ(Platform::toUtf8(e.message()),
                      "property 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.07: item 0 of the "
                      "collection has 2 bytes, expected " +
                          std::to_string(itemSize) + " as its others have");
        }
    }
}

TEST_F(Elements, withCollectionsTakeItems) {
    auto& element =
        dynamic_cast<CollectionElement&>(*partition.createMetadataSet(prefaceKey()).find(numbers));
    element.set(Templates::auto_ptr<Types::Collection>(new Types::Array(2)));
    EXPECT_FALSE(element.isSkipped());
    element.add(Types::UInt16(5).clone());
    element.add({});
    ASSERT_EQ(element.value()->size(), 1U);
    EXPECT_EQ(element.serializedSize(), 10U);
}

} // namespace
} // namespace Corvid::Testing
