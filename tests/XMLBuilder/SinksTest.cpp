#include "XMLBuilder/writer/Document.h"
#include "tests/XMLBuilder/RandomModel.h"
#include "tests/XMLBuilder/XmlOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using XMLBuilder::DocumentPlan;
using XMLUtils::EncodingType;
using XMLUtils::Layout;

/// What comes of writing a document in one way: its bytes, or why there are none.
template <class Write> std::string outcomeOf(Write write) {
    DataIO::Memory::MemoryDataSink sink;
    try {
        write(sink);
    } catch (const Exceptions::BaseException& error) {
        return "refused: " + Platform::toUtf8(error.message());
    }
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

/// Compares the text of a document that is written at once with that of its DOM.
void expectTheSameText(Metadata::PartitionMetadata& partition, const Metadata::MetadataSet& start,
                       const std::string& seed) {
    for (const DocumentPlan::Manner manner :
         {DocumentPlan::Manner{false, false}, {false, true}, {true, false}, {true, true}}) {
        for (const auto encoding : {EncodingType::utf8, EncodingType::utf16}) {
            for (const Layout layout : {Layout::indented, Layout::compact}) {
                const std::string written = outcomeOf([&](DataIO::DataSink& sink) {
                    XMLUtils::RefuseInvalidCharacters invalid;
                    writeDocumentText(DocumentPlan(partition, start, manner), encoding, layout,
                                      invalid, sink, "");
                });
                const std::string serialised = outcomeOf([&](DataIO::DataSink& sink) {
                    XMLUtils::RefuseInvalidCharacters invalid;
                    const auto document = XMLBuilder::partition2XML(
                        &partition, &start, manner.referencesAsValues, manner.skipNonStructural);
                    serialise(document.get(), encoding, layout, invalid, sink);
                });
                ASSERT_EQ(written, serialised) << seed << ", values " << manner.referencesAsValues
                                               << ", structural " << manner.skipNonStructural;
            }
        }
    }
}

TEST(Sinks, writeTheSameTextForRandomMetadata) {
    std::size_t documents = 0;
    for (unsigned seed = 0; seed != 400; ++seed) {
        RandomModel random(seed, seed % 2 != 0);
        for (const auto* const start : random.model.partition) {
            expectTheSameText(random.model.partition, *start, "seed " + std::to_string(seed));
            ++documents;
            if (seed % 5 != 0) {
                break;
            }
        }
        if (HasFatalFailure()) {
            return;
        }
    }
    RecordProperty("documents", static_cast<int>(documents));
    EXPECT_GT(documents, 400U);
}

TEST(Sinks, refuseACharacterThatXmlCantHoldAtTheSamePlace) {
    Model model = Model::extendedBy(RandomModel::things());
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    auto& thing = model.set("Thing", 2);
    model.value(thing, "UTF16String", Types::UTF16String(Platform::fromUtf8("a\x01").c_str()));
    expectTheSameText(model.partition, preface, "one character");
    EXPECT_THAT(outcomeOf([&](DataIO::DataSink& sink) {
                    XMLUtils::RefuseInvalidCharacters invalid;
                    writeDocumentText(DocumentPlan(model.partition, preface, {}),
                                      EncodingType::utf8, Layout::indented, invalid, sink, "");
                }),
                testing::HasSubstr(uuidText(2)));
}

TEST(Sinks, keepIdentifiersOfOneNameInTwoNamespaces) {
    MetaMetadata::Dictionary::Texts texts;
    texts.push_back({"other.dict",
                     "namespace rp210 urn:other\n"
                     "set rp210:Odd 06.0e.2b.34.02.53.01.01.0e.7f.0a.00.00.00.00.00 - abstract\n"
                     "property rp210:InstanceUID "
                     "06.0e.2b.34.01.01.01.01.0e.7f.0a.00.00.00.00.00 - UUID "
                     "optional -\n"});
    const auto other = MetaMetadata::Dictionary::fromTexts(texts);
    Model model;
    auto& preface = model.set("Preface", 1);
    static_cast<Metadata::SimpleElement&>(
        preface.createInvalidElement(Metadata::Element::Attribute(
            new MetaMetadata::MisplacedAttribute(**other->metaElementBegin()))))
        .set(uuid(2).clone());
    expectTheSameText(model.partition, preface, "two namespaces");
    const std::string text = outcomeOf([&](DataIO::DataSink& sink) {
        XMLUtils::RefuseInvalidCharacters invalid;
        writeDocumentText(DocumentPlan(model.partition, preface, {}), EncodingType::utf8,
                          Layout::compact, invalid, sink, "");
    });
    EXPECT_THAT(text, testing::HasSubstr(":InstanceUID=\"" + uuidText(1) + "\""));
    EXPECT_THAT(text, testing::HasSubstr(":InstanceUID=\"" + uuidText(2) + "\""));
}

} // namespace
} // namespace Corvid::Testing
