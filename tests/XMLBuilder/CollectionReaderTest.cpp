#include "tests/XMLBuilder/Things.h"
#include "tests/support/Paths.h"

#include <fstream>

namespace Corvid::Testing {
namespace {

using Metadata::ReferenceBatchElement;

class CollectionReader : public Things {
protected:
    static std::string items(std::initializer_list<const char*> texts) {
        std::string xml;
        for (const char* text : texts) {
            xml += std::string("<e:Element>") + text + "</e:Element>";
        }
        return xml;
    }

    const Types::Collection* readItems(const std::string& tag, const std::string& content) {
        const auto& set = readThing("<e:" + tag + ">" + content + "</e:" + tag + ">");
        return elementOf<Metadata::CollectionElement>(set, tag).value();
    }

    Model::Set& readReferences(const std::string& tag, const std::string& content) {
        return readThing("<e:" + tag + ">" + content + "</e:" + tag + ">");
    }
};

TEST_F(CollectionReader, readsItemsInOrderAndNothingElse) {
    const auto* found = readItems("UInt16Array", "text" + items({"1", "300"}) + "<!-- c -->" +
                                                     "<anything>7</anything>");
    EXPECT_EQ(bytesOf(found), "00000003000000020001012c0007");
    EXPECT_NE(dynamic_cast<const Types::Array*>(found), nullptr);
    EXPECT_NE(dynamic_cast<const Types::Batch*>(readItems("UInt16Batch", items({"1"}))), nullptr);
}

TEST_F(CollectionReader, readsNoItemsAsAnEmptyCollectionOfTheTypesSize) {
    EXPECT_EQ(bytesOf(readItems("UInt16Array", "")), "0000000000000002");
    EXPECT_EQ(bytesOf(readItems("RationalBatch", "")), "0000000000000008");
    EXPECT_EQ(bytesOf(readItems("DataStreamBatch", "")), "0000000000000000");
}

TEST_F(CollectionReader, passesOverItemsWithoutValue) {
    EXPECT_EQ(bytesOf(readItems("UInt8Array", items({"1", "", "2"}))), "00000002000000010102");
}

TEST_F(CollectionReader, measuresItemsOfVariableSize) {
    EXPECT_EQ(bytesOf(readItems("UTF16StringBatch", items({"ab", "cd"}))),
              "000000020000000400610062"
              "00630064");
    EXPECT_EQ(bytesOf(readItems("ISO7StringArray", items({"abc"}))), "0000000100000003616263");
    EXPECT_EQ(bytesOf(readItems("DataStreamArray", items({"0a", "0B"}))), "00000002000000010a0b");
    EXPECT_EQ(bytesOf(readItems("UnknownArray", items({"0a"}))), "00000001000000010a");
}

TEST_F(CollectionReader, refusesItemsOfDifferentSizes) {
    const auto refused = [&](const std::string& tag, const std::string& content) {
        const Failure failure =
            failureOf<Exceptions::InvalidLength>([&] { readItems(tag, content); });
        EXPECT_EQ(
            failure.message,
            "subElementSize == dataType -> serializedSize (): There is a collection in the XML "
            "that contains an ARRAY or COLLECTION that contain elements with different sizes.");
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/FromXMLElementVisitor");
    };
    refused("UTF16StringBatch", items({"ab", "cd", "efg"}));
    refused("ISO7StringArray", items({"abc", "", "abc"}));
    refused("DataStreamBatch", items({"0a", "0a0b"}));
}

TEST_F(CollectionReader, comparesSizesFromTheFirstItemThatHasOne) {
    EXPECT_EQ(bytesOf(readItems("ISO7StringArray", items({"", "", "ab", "cd"}))),
              "000000020000000261626364");
}

TEST_F(CollectionReader, takesTextsOfBlanksAtTheFrontForEmptyItemsInABuffer) {
    EXPECT_EQ(bytesOf(readItems("ISO7StringBatch", items({"  ", " \n\t ", "ab", "cd"}))),
              "000000020000000261626364");
    EXPECT_EQ(bytesOf(readItems("UTF16StringArray", items({" ", "abc"}))),
              "0000000100000006006100620063");
    EXPECT_EQ(bytesOf(readItems("ISO7StringBatch", items({" ", "   "}))), "0000000000000000");
    failureOf<Exceptions::InvalidLength>([&] {
        readItems("ISO7StringArray", items({"ab", "  "}));
    });
}

TEST_F(CollectionReader, keepsTextsOfBlanksAtTheFrontInAFile) {
    const TemporaryDir folder;
    const auto path = folder.path() / "blanks.xml";
    const auto readFile = [&](std::initializer_list<const char*> texts) {
        std::ofstream(path) << documentOf("<t:Thing><e:ISO7StringBatch>" + items(texts) +
                                          "</e:ISO7StringBatch></t:Thing>");
        const auto sets = XML2Partition::getPartitionMetadataFromFile(
            Platform::fromUtf8(path.string()).c_str(), &model_.partition);
        return bytesOf(
            elementOf<Metadata::CollectionElement>(*sets.front(), "ISO7StringBatch").value());
    };
    EXPECT_EQ(readFile({"  ", "ab"}), "000000020000000220206162");
    failureOf<Exceptions::InvalidLength>([&] { readFile({"   ", "ab"}); });
}

TEST_F(CollectionReader, givesDanglingLinksOfZerosOneNewIdentifierAsAnyOtherName) {
    const std::string link = "<s377m:Dangling_REF types:TargetInstance='" + uuidText(0) + "'/>";
    const auto& set =
        readThing("<e:StrongReference>" + link + "</e:StrongReference><e:WeakReferenceArray>" +
                  link + link + "</e:WeakReferenceArray>");
    const auto& one = elementOf<Metadata::ReferenceElement>(set, "StrongReference");
    const auto& many = elementOf<Metadata::ReferenceArrayElement>(set, "WeakReferenceArray");
    ASSERT_EQ(many.size(), 2U);
    EXPECT_NE(one.value()->uuid(), Types::UUID());
    EXPECT_EQ(many.at(0).uuid(), one.value()->uuid());
    EXPECT_EQ(many.at(1).uuid(), one.value()->uuid());
    EXPECT_TRUE(model_.partition.resolve(*one.value()).empty());
}

TEST_F(CollectionReader, countsValuesWithoutBytesAmongTheItems) {
    const char* none = "<![CDATA[]]>"; // a value, though one of no bytes
    EXPECT_EQ(bytesOf(readItems("DataStreamBatch", items({none}))), "0000000100000000");
    EXPECT_EQ(bytesOf(readItems("DataStreamBatch", items({none, none, "0a"}))),
              "00000003000000010a");
    failureOf<Exceptions::InvalidLength>([&] {
        readItems("DataStreamBatch", items({none, "0a", none}));
    });
}

TEST_F(CollectionReader, leavesTheElementAsItWasWhenSizesDiffer) {
    auto& set = readThing("");
    EXPECT_ANY_THROW(readItems("DataStreamBatch", items({"0a", "0a0b"})));
    const auto& failed = **std::prev(model_.partition.end());
    EXPECT_NE(&failed, &set);
    EXPECT_EQ(elementOf<Metadata::CollectionElement>(failed, "DataStreamBatch").value(), nullptr);
}

TEST_F(CollectionReader, keepsTheItemsBeforeOneThatFails) {
    EXPECT_ANY_THROW(
        readItems("UUIDArray", items({"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01", "bad"})));
    const auto& failed = **std::prev(model_.partition.end());
    EXPECT_EQ(elementOf<Metadata::CollectionElement>(failed, "UUIDArray").value()->size(), 1U);
}

TEST_F(CollectionReader, readsLinksToTheSameNameAsOneIdentifier) {
    const auto sets = readSets(
        "<t:Thing><e:StrongReference><t:Other_REF types:TargetInstance='x'/></e:StrongReference>"
        "</t:Thing><t:Thing><e:WeakReferenceBatch><a_REFERENCE n='x'/><t:Other_REF n='y'/>"
        "</e:WeakReferenceBatch></t:Thing><t:Other rp210:InstanceUID='x'/>");
    const auto& strong =
        *elementOf<Metadata::ReferenceElement>(*sets.front(), "StrongReference").value();
    const auto& weak =
        elementOf<ReferenceBatchElement>(**std::next(sets.begin()), "WeakReferenceBatch");
    ASSERT_EQ(weak.size(), 2U);
    EXPECT_TRUE(strong.isStrong());
    EXPECT_FALSE(weak.at(0).isStrong());
    EXPECT_EQ(strong.uuid(), sets.back()->instanceUID());
    EXPECT_EQ(weak.at(0).uuid(), strong.uuid());
    EXPECT_NE(weak.at(1).uuid(), strong.uuid());
    EXPECT_NE(weak.at(1).uuid(), Types::UUID());
}

TEST_F(CollectionReader, meetsATargetThatWasReadBefore) {
    const auto sets =
        readSets("<t:Other rp210:InstanceUID='x'/><t:Thing><e:WeakReference><t:Other_REF n='x'/>"
                 "</e:WeakReference></t:Thing>");
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(*sets.back(), "WeakReference").value()->uuid(),
              sets.front()->instanceUID());
}

TEST_F(CollectionReader, givesNamesNewIdentifiersInEveryCall) {
    const std::string xml = "<t:Thing rp210:InstanceUID='" + uuidText(3) + "'/>";
    EXPECT_NE(readSets(xml).front()->instanceUID(), readSets(xml).front()->instanceUID());
}

TEST_F(CollectionReader, readsASetInsideAReference) {
    const auto& set =
        readThing("<e:StrongReference>text<t:Other rp210:InstanceUID='x'>"
                  "<e:OtherNumber>9</e:OtherNumber></t:Other><t:Other/></e:StrongReference>");
    ASSERT_EQ(model_.partition.size(), 2U);
    const auto& inner = **std::next(model_.partition.begin());
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(set, "StrongReference").value()->uuid(),
              inner.instanceUID());
    EXPECT_EQ(bytesOf(elementOf(inner, "OtherNumber").value()), "09");
}

TEST_F(CollectionReader, readsSetsAndLinksInACollectionOfReferences) {
    const auto& set = readReferences("StrongReferenceArray",
                                     "<t:Other/><t:Nobody/><t:Other_REF n='x'/><t:Thing/>");
    EXPECT_EQ(elementOf<Metadata::ReferenceArrayElement>(set, "StrongReferenceArray").size(), 3U);
    EXPECT_EQ(model_.partition.size(), 3U);
}

TEST_F(CollectionReader, leavesAReferenceToASetOfUnknownClassUnset) {
    const auto& set = readReferences("StrongReference", "<t:Nobody/>");
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(set, "StrongReference").value(), nullptr);
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(readReferences("WeakReference", "text"),
                                                    "WeakReference")
                  .value(),
              nullptr);
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(readReferences("WeakReference", "<t:X_REF/>"),
                                                    "WeakReference")
                  .value(),
              nullptr);
}

TEST_F(CollectionReader, readsNoItemsAsAnEmptyCollectionOfReferences) {
    for (const char* tag : {"StrongReferenceArray", "StrongReferenceBatch", "WeakReferenceArray",
                            "WeakReferenceBatch"}) {
        for (const char* content : {"", "text", "<!-- comment -->"}) {
            const auto& set = readReferences(tag, content);
            const auto& element = elementOf<Metadata::ReferenceCollectionElement>(set, tag);
            EXPECT_EQ(element.size(), 0U);
            EXPECT_FALSE(element.isSkipped());
            DataIO::Memory::MemoryDataSink sink;
            element.serialize(sink);
            EXPECT_EQ(sink.serializedSize(), 8U);
            EXPECT_EQ(set.countValues(), 2U); // its identifier beside it
        }
    }
}

} // namespace
} // namespace Corvid::Testing
