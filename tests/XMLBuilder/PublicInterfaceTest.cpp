#include "host/base/Exceptions.h"
#include "tests/XMLBuilder/XmlOf.h"
#include "tests/support/LeaksByContract.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;
using XMLBuilder::partition2XML;

const Utf16Text before = Platform::fromUtf8("as it was");

TEST(PublicInterface, givesTheSameConstantsOnEveryCall) {
    EXPECT_EQ(&XMLBuilder::getPrefix(), &XMLBuilder::getPrefix());
    EXPECT_EQ(&XMLBuilder::getNamespaceURI(), &XMLBuilder::getNamespaceURI());
    EXPECT_EQ(Platform::toUtf8(XMLBuilder::getPrefix().utf16()), "s377m");
    EXPECT_EQ(Platform::toUtf8(XMLBuilder::getNamespaceURI().utf16()), "urn:SMPTE:S377M");
}

TEST(PublicInterface, givesNothingForNoPartition) {
    EXPECT_FALSE(partition2XML(nullptr, false, false));
    EXPECT_FALSE(partition2XML(nullptr, nullptr, false, false));
    Utf16Text text = before;
    partition2XML(nullptr, false, false, XMLUtils::EncodingType::utf8, text);
    partition2XML(nullptr, nullptr, false, false, XMLUtils::EncodingType::utf8, text);
    EXPECT_EQ(text, before);
}

TEST(PublicInterface, givesTheDocumentNodeNotTheRoot) {
    Model model;
    model.set("Preface", 1);
    const auto document = partition2XML(&model.partition, false, false);
    EXPECT_EQ(document->getNodeType(), xercesc::DOMNode::DOCUMENT_NODE);
}

TEST(PublicInterface, beginsAtAnySetAndAddsFloatingAndDarkSetsAllTheSame) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    auto& storage = model.set("ContentStorage", 2);
    model.set("Filler", 3);
    model.darkSet(Model::darkKey(), 4, "d");
    const auto document = partition2XML(&model.partition, &storage, false, false);
    const std::string text = toText(document.get(), XMLUtils::Layout::compact);
    EXPECT_THAT(text, HasSubstr("\"><s377m:ContentStorage rp210:InstanceUID=\"" + uuidText(2) +
                                "\"/><groups:FloatingDarkMetadata><groups:DarkMetadata"));
    EXPECT_THAT(text, HasSubstr("<s377m:Filler "));
    EXPECT_EQ(text.find("<s377m:Preface"), std::string::npos);
}

TEST(PublicInterface, writesTextInEveryEncoding) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", Types::VersionType(1, 3));
    for (const auto encoding : {XMLUtils::EncodingType::utf8, XMLUtils::EncodingType::utf16,
                                XMLUtils::EncodingType::utf16LE, XMLUtils::EncodingType::utf16BE}) {
        Utf16Text text = before;
        partition2XML(&model.partition, &preface, false, false, encoding, text);
        EXPECT_THAT(Platform::toUtf8(text),
                    HasSubstr("<rp210:FormatVersion>259</rp210:FormatVersion>"));
        Utf16Text same;
        partition2XML(&model.partition, false, false, encoding, same);
        EXPECT_EQ(text, same);
    }
}

TEST(PublicInterface, leavesTheTextAsItWasWhenAValueHasNoPlaceInXml) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    auto& comment = model.set("CommentMarker", 2);
    const Types::u16 control[] = {'a', 1, 0};
    model.value(comment, "EventComment", Types::UTF16String(control));
    Utf16Text text = before;
    EXPECT_THROW(partition2XML(&model.partition, false, false, XMLUtils::EncodingType::utf8, text),
                 Exceptions::InvalidFormat);
    EXPECT_EQ(text, before);
    EXPECT_TRUE(partition2XML(&model.partition, false, false)); // the DOM holds it
}

/// A partition whose sets are listed with an exception.
class FailingPartition : public Metadata::PartitionMetadata {
public:
    using PartitionMetadata::PartitionMetadata;
    Metadata::PartitionDictionary& partitionDictionary() override { throw 377; }
};

TEST(PublicInterface, leavesTheLockFreeWhenAWriterThrows) {
    FailingPartition failing(MetaMetadata::Dictionary::builtIn());
    const auto& dictionary = *MetaMetadata::Dictionary::builtIn();
    const auto* definition =
        dictionary.findSet(Metadata::Structural::StructuralMetadataKeys::preface());
    auto& preface = failing.createEmptyMetadataSet(definition->key(), *definition);
    preface
        .createInvalidElement(Metadata::Element::Attribute(new MetaMetadata::UnknownAttribute(
            Types::LocalTag(0x8001), MetaMetadata::UnknownAttribute::unknownLabel)))
        .parse(Model::view("x"));
    {
        const LeaksByContract leaks;
        EXPECT_THROW(partition2XML(&failing, false, false), int);
    }
    Model model;
    model.set("Preface", 1);
    EXPECT_TRUE(partition2XML(&model.partition, false, false));
}

TEST(PublicInterface, givesNothingWithoutPreface) {
    Model model;
    model.set("Filler", 1);
    const LeaksByContract leaks;
    EXPECT_FALSE(partition2XML(&model.partition, false, false));
    EXPECT_FALSE(partition2XML(&model.partition, nullptr, false, false));
    Utf16Text text = before;
    partition2XML(&model.partition, false, false, XMLUtils::EncodingType::utf8, text);
    EXPECT_EQ(text, before);
}

} // namespace
} // namespace Corvid::Testing
