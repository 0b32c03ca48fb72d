#include "tests/XMLBuilder/Things.h"
#include "tests/support/Paths.h"

#include <fstream>

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using XML2Partition::getPartitionMetadataFromBuffer;
using XML2Partition::getPartitionMetadataFromFile;
using XML2Partition::getPartitionMetadataFromString;

class DocumentReader : public Things {
protected:
    static std::string tagOf(const Model::Set& set) {
        return Platform::toUtf8(set.metaMetadataSet()->attribute("XMLTagName"));
    }
    static std::string tagsOf(const XML2Partition::SetList& sets) {
        std::string tags;
        for (const auto* set : sets) {
            tags += tagOf(*set) + " ";
        }
        return tags;
    }
    XML2Partition::SetList readFile(const std::string& xml) {
        const TemporaryDir folder;
        const auto path = folder.path() / "document.xml";
        std::ofstream(path, std::ios::binary) << xml;
        return getPartitionMetadataFromFile(Platform::fromUtf8(path.string()).c_str(),
                                            &model_.partition);
    }
};

TEST_F(DocumentReader, makesNothingOfARootWithoutElements) {
    EXPECT_TRUE(readSets("text<!-- comment --><?p i?>").empty());
    EXPECT_EQ(model_.partition.size(), 0U);
}

TEST_F(DocumentReader, takesAnyRoot) {
    EXPECT_EQ(tagsOf(readXml(model_, "<anything><Preface/></anything>")), "Preface ");
}

TEST_F(DocumentReader, makesOneSetPerElementInDocumentOrder) {
    const auto sets = readSets("<t:Thing/><t:Other/><t:Thing/>");
    EXPECT_EQ(tagsOf(sets), "Thing Other Thing ");
    EXPECT_EQ(model_.partition.size(), 3U);
    EXPECT_TRUE(std::equal(sets.begin(), sets.end(), model_.partition.begin()));
}

TEST_F(DocumentReader, matchesSetsByLocalNameOnly) {
    EXPECT_EQ(tagsOf(readSets("<Thing/><x:Thing xmlns:x='urn:else'/><t:thing/><t:THING/>")),
              "Thing Thing ");
}

TEST_F(DocumentReader, passesOverElementsItDoesNotKnow) {
    EXPECT_TRUE(readSets("<t:Nothing><t:Thing/></t:Nothing>").empty());
    EXPECT_EQ(model_.partition.size(), 0U);
}

TEST_F(DocumentReader, readsTheFloatingContainerByItsQualifiedNameOnly) {
    const std::string inside = "><t:Thing/></";
    EXPECT_TRUE(readSets("<FloatingDarkMetadata" + inside + "FloatingDarkMetadata>").empty());
    EXPECT_TRUE(readSets("<g:FloatingDarkMetadata xmlns:g='urn:SMPTE:Groups:MXF'" + inside +
                         "g:FloatingDarkMetadata>")
                    .empty());
    EXPECT_EQ(tagsOf(readSets("<t:Other/><groups:FloatingDarkMetadata" + inside +
                              "groups:FloatingDarkMetadata><t:Other/>")),
              "Other Thing Other ");
}

TEST_F(DocumentReader, doesNotListSetsInsideReferences) {
    const auto sets =
        readSets("<t:Thing><e:StrongReference><t:Other/></e:StrongReference></t:Thing>");
    EXPECT_EQ(tagsOf(sets), "Thing ");
    EXPECT_EQ(model_.partition.size(), 2U);
}

TEST_F(DocumentReader, readsTextAndFilesToo) {
    const std::string xml = documentOf("\n <t:Thing>\n  <e:UInt8>5</e:UInt8>\n </t:Thing>\n");
    for (const auto& sets :
         {getPartitionMetadataFromString(Platform::fromUtf8(xml), &model_.partition),
          readFile(xml)}) {
        ASSERT_EQ(tagsOf(sets), "Thing ");
        EXPECT_EQ(bytesOf(elementOf(*sets.front(), "UInt8").value()), "05");
    }
}

TEST_F(DocumentReader, removesWhiteSpaceBetweenElementsFromBuffersAndLeavesItInFiles) {
    // A value that is white space alone is none in a buffer, and a text without number in a file.
    const std::string xml = documentOf("<t:Thing><e:UInt8> \n </e:UInt8></t:Thing>");
    EXPECT_EQ(bytesOf(elementOf(*readXml(model_, xml).front(), "UInt8").value()), "none");
    EXPECT_EQ(bytesOf(elementOf(*readFile(xml).front(), "UInt8").value()), "00");
}

TEST_F(DocumentReader, readsWhatTheWriterWritesInEveryEncoding) {
    Model written;
    written.set("Preface", 1);
    for (const auto encoding : {XMLUtils::EncodingType::utf8, XMLUtils::EncodingType::utf16,
                                XMLUtils::EncodingType::utf16LE, XMLUtils::EncodingType::utf16BE}) {
        Utf16Text text;
        XMLBuilder::partition2XML(&written.partition, false, false, encoding, text);
        EXPECT_EQ(tagsOf(getPartitionMetadataFromString(text, &model_.partition)), "Preface ");
    }
}

TEST_F(DocumentReader, reportsDocumentsThatAreNotWellFormed) {
    const Failure failure =
        failureOf<Exceptions::ParseError>([&] { readXml(model_, "<a><b></a>"); });
    EXPECT_THAT(failure.message, StartsWith("class xercesc_3_0::SAXException: line 1, column "));
    EXPECT_EQ(failure.file, "Corvid/XMLUtils/Utils");
    EXPECT_EQ(failure.line, 207);
    EXPECT_EQ(failure.code, 33U);
}

TEST_F(DocumentReader, reportsTheSameFromTextAndFile) {
    const std::string xml = "<a><b></a>";
    const auto fromText = failureOf<Exceptions::ParseError>(
        [&] { getPartitionMetadataFromString(Platform::fromUtf8(xml), &model_.partition); });
    const auto fromFile = failureOf<Exceptions::ParseError>([&] { readFile(xml); });
    EXPECT_THAT(fromText.message, StartsWith("class xercesc_3_0::SAXException: "));
    EXPECT_THAT(fromFile.message, StartsWith("class xercesc_3_0::SAXException: "));
    EXPECT_EQ(fromText.line, 207);
    EXPECT_EQ(fromFile.line, 207);
}

TEST_F(DocumentReader, letsItsOwnExceptionsPass) {
    const auto failure = failureOf<Exceptions::IOError>([&] {
        getPartitionMetadataFromFile(Platform::fromUtf8("/no such/file.xml").c_str(),
                                     &model_.partition);
    });
    EXPECT_THAT(failure.message, HasSubstr("/no such/file.xml"));
    failureOf<Exceptions::InvalidArgument>([] {
        const unsigned char xml[] = "<a/>";
        getPartitionMetadataFromBuffer(xml, 4, nullptr);
    });
}

TEST_F(DocumentReader, tellsTheFailureOfAValueUnchangedInEveryForm) {
    const std::string xml = documentOf("<t:Thing><e:DataStream>0</e:DataStream></t:Thing>");
    const auto check = [](auto read) {
        const Failure failure = failureOf<Exceptions::InvalidFormat>(read);
        EXPECT_EQ(failure.message, "Value has invalid Length");
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/FromXMLElementVisitor");
        EXPECT_EQ(failure.code, 8U);
    };
    check([&] { readXml(model_, xml); });
    check([&] { getPartitionMetadataFromString(Platform::fromUtf8(xml), &model_.partition); });
    check([&] { readFile(xml); });
}

TEST_F(DocumentReader, leavesWhatItMadeBeforeAFailure) {
    failureOf<Exceptions::InvalidFormat>([&] {
        readSets("<t:Thing><e:UInt8>1</e:UInt8></t:Thing>"
                 "<t:Thing><e:DataStream>0</e:DataStream></t:Thing><t:Thing/>");
    });
    ASSERT_EQ(model_.partition.size(), 2U);
    EXPECT_EQ(bytesOf(elementOf(**model_.partition.begin(), "UInt8").value()), "01");
}

} // namespace
} // namespace Corvid::Testing
