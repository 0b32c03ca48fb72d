#include "editing/DocumentMetadata.h"
#include "editing/WriteDocument.h"
#include "editing/compare/Comparison.h"
#include "host/dataio/Memory.h"
#include "tests/support/Model.h"

#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

std::string written(Metadata::PartitionMetadata& metadata,
                    const Editing::DocumentContent& content = {}) {
    DataIO::Memory::MemoryDataSink sink;
    Editing::writeDocument(metadata, content, sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

Editing::DocumentMetadata read(const std::string& document,
                               Editing::DocumentIdentifiers identifiers = {}) {
    DataIO::Memory::MemoryDataSource source(reinterpret_cast<const unsigned char*>(document.data()),
                                            document.size());
    return Editing::readDocument(source, MetaMetadata::Dictionary::builtIn(), identifiers);
}

/// A Preface (1) that owns a ContentStorage (2).
class Documents : public ::testing::Test {
protected:
    Documents() {
        model.reference(model.set("Preface", 1), "ContentStorageObject", 2);
        model.set("ContentStorage", 2);
    }

    Model model;
};

TEST_F(Documents, readBackAreTheMetadataThatWasWritten) {
    const std::string document = written(model.partition);
    EXPECT_THAT(document, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    const auto same = read(document);
    EXPECT_THAT(Editing::compare(model.partition, *same.metadata).differences, IsEmpty());
    const auto fresh = read(document, Editing::DocumentIdentifiers::fresh);
    EXPECT_EQ(Editing::compare(model.partition, *fresh.metadata)
                  .differences.count(Editing::DifferenceKind::missingSet),
              2U);
}

TEST_F(Documents, mayBeginWithAnySetThatIsThere) {
    Editing::DocumentContent content;
    content.start = uuid(2);
    const std::string document = written(model.partition, content);
    EXPECT_THAT(document, HasSubstr("<s377m:ContentStorage "));
    EXPECT_TRUE(read(document).isPartial());
    content.start = uuid(3);
    EXPECT_THROW(written(model.partition, content), Exceptions::InvalidArgument);
}

TEST_F(Documents, needAPrefaceUnlessTheyBeginWithAnotherSet) {
    Model bare;
    bare.set("ContentStorage", 2);
    try {
        written(bare.partition);
        FAIL();
    } catch (const Exceptions::InvalidFormat& error) {
        EXPECT_EQ(Platform::toUtf8(error.message()), "the partition has no Preface");
    }
}

/// A document in which so many sets after the first have its identifier and another value.
std::string documentWithUnequalCopies(int count) {
    std::string document =
        "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210'>\n";
    for (int i = 0; i <= count; ++i) {
        document += "<s377m:TimelineTrack rp210:InstanceUID='" + uuidText(1) + "'><rp210:TrackID>" +
                    std::to_string(i) + "</rp210:TrackID></s377m:TimelineTrack>\n";
    }
    return document + "</s377m:MetadataSets>";
}

TEST_F(Documents, areRefusedWithEveryMistakeInTheirOrder) {
    try {
        read("<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210'>\n"
             "<s377m:TimelineTrack rp210:InstanceUID='" +
             uuidText(1) +
             "'>\n<rp210:TrackID>one</rp210:TrackID>\n<rp210:NoSuch/>\n</s377m:TimelineTrack>\n"
             "</s377m:MetadataSets>");
        FAIL();
    } catch (const Editing::DocumentMistakes& refusal) {
        ASSERT_EQ(refusal.mistakes().size(), 2U);
        EXPECT_EQ(refusal.count(), 2U);
        EXPECT_EQ(refusal.mistakes()[0].line, 3U);
        EXPECT_THAT(refusal.mistakes()[0].text, HasSubstr("TrackID"));
        EXPECT_EQ(refusal.mistakes()[1].line, 4U);
        EXPECT_THAT(Platform::toUtf8(refusal.message()), HasSubstr("and 1 more mistakes"));
    }
}

TEST_F(Documents, countTheMistakesThatAreNotListed) {
    try {
        read(documentWithUnequalCopies(500));
        FAIL();
    } catch (const Editing::DocumentMistakes& refusal) {
        EXPECT_EQ(refusal.count(), 500U);
        EXPECT_EQ(refusal.mistakes().size(), 100U);
    }
}

} // namespace
