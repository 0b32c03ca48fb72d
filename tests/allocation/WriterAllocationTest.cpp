#include "XMLBuilder/XMLBuilder.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "tests/allocation/Sweep.h"
#include "tests/allocation/TextOf.h"
#include "tests/support/RichModel.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMNode.hpp>

namespace Corvid::Testing {
namespace {

using Fill = void (*)(Model&);
using Document = Templates::auto_ptr<xercesc::DOMNode>;

/// What writers may throw when there is no memory: they catch nothing, and XQilla's documents have
/// an exception of their own for it.
const std::set<std::string> outOfMemory = {"std::bad_alloc", "xercesc::OutOfMemoryException",
                                           "XQillaException"};

class WritesDocument : public Subject {
public:
    explicit WritesDocument(bool referencesAsValues, Fill fill = fillRichly)
        : referencesAsValues_(referencesAsValues) {
        fill(model_);
    }

    void call() override {
        document_ = XMLBuilder::partition2XML(&model_.partition, referencesAsValues_, false);
    }
    std::string result() override { return document_ ? textOf(*document_) : "none"; }

private:
    bool referencesAsValues_;
    Model model_ = emptyModel();
    Document document_;
};

class WritesText : public Subject {
public:
    explicit WritesText(Fill fill = fillRichly) { fill(model_); }

    void call() override {
        XMLBuilder::partition2XML(&model_.partition, false, false, XMLUtils::EncodingType::utf8,
                                  text_);
    }
    std::string result() override { return Platform::toUtf8(text_); }
    void lookAtFailure() override { EXPECT_EQ(Platform::toUtf8(text_), "before"); }

private:
    Model model_ = emptyModel();
    Utf16Text text_ = Platform::fromUtf8("before");
};

class WritesBytes : public Subject {
public:
    WritesBytes() {
        fillRichly(model_);
        document_ = XMLBuilder::partition2XML(&model_.partition, false, false);
    }

    void call() override {
        XMLUtils::ReplaceInvalidCharacters invalid;
        XMLUtils::serialise(document_.get(), XMLUtils::EncodingType::utf8,
                            XMLUtils::Layout::indented, invalid, sink_);
    }
    std::string result() override {
        return {reinterpret_cast<const char*>(sink_.rawBuffer()), sink_.serializedSize()};
    }
    /// The document can be written again.
    void lookAtFailure() override { EXPECT_NE(textOf(*document_), ""); }

private:
    Model model_ = emptyModel();
    Document document_;
    DataIO::Memory::MemoryDataSink sink_;
};

void fillWithoutPreface(Model& model) { model.set("ContentStorage", 1); }

void fillWithAnInvalidCharacter(Model& model) {
    const unsigned short text[] = {'a', 1, 0};
    model.set("Preface", 1);
    model.value(model.set("Thing", 2), "UTF16String", Types::UTF16String(text));
}

using WriterWithoutMemory = WithoutMemory;

TEST_F(WriterWithoutMemory, givesTheDocumentUpAndTheLockBack) {
    sweep([] { return std::make_unique<WritesDocument>(false); }, outOfMemory);
}

TEST_F(WriterWithoutMemory, givesADocumentWithNestedSetsUp) {
    sweep([] { return std::make_unique<WritesDocument>(true); }, outOfMemory);
}

TEST_F(WriterWithoutMemory, mayFailBeforeItFindsThatThereIsNoPreface) {
    sweep([] { return std::make_unique<WritesDocument>(false, fillWithoutPreface); }, outOfMemory);
}

TEST_F(WriterWithoutMemory, makesOnTheNextUseWhatItCouldNotMakeOnTheFirst) {
    sweepFirstUse([] { return std::make_unique<WritesDocument>(false); });
}

TEST_F(WriterWithoutMemory, leavesTheTextAsItWas) {
    sweep([] { return std::make_unique<WritesText>(); }, outOfMemory);
}

TEST_F(WriterWithoutMemory, mayFailBeforeItRefusesACharacter) {
    sweep([] { return std::make_unique<WritesText>(fillWithAnInvalidCharacter); }, outOfMemory);
}

TEST_F(WriterWithoutMemory, leavesADocumentThatIsWrittenAsBytesAsItWas) {
    sweep([] { return std::make_unique<WritesBytes>(); }, outOfMemory);
}

} // namespace
} // namespace Corvid::Testing
