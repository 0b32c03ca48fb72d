#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "host/xmlutils/LoadDocument.h"
#include "tests/allocation/Sweep.h"
#include "tests/allocation/TextOf.h"
#include "tests/support/DocumentText.h"
#include "tests/support/Paths.h"
#include "tests/support/RichModel.h"

#include <fstream>
#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::Testing {
namespace {

/// What readers may throw when there is no memory: they call it unknown unless
/// XQilla has words for it, and std::bad_alloc is
/// what is left when there is no memory to say so.
const std::set<std::string> outOfMemory = {
    "33 Unknown error in Xerces or XQilla",
    "33 XQillaException::",
    "std::bad_alloc",
};

std::string documentOf(Metadata::PartitionMetadata& partition, bool referencesAsValues) {
    return textOf(*XMLBuilder::partition2XML(&partition, referencesAsValues, false));
}

std::string richDocument(bool referencesAsValues) {
    Model model = emptyModel();
    fillRichly(model);
    return documentOf(model.partition, referencesAsValues);
}

/// Reads into a partition of its own.
class Reads : public Subject {
public:
    std::string result() override {
        return std::to_string(sets_.size()) +
               " sets: " + withoutIdentifiers(documentOf(model_.partition, false));
    }

protected:
    Model model_ = emptyModel();
    XML2Partition::SetList sets_;
};

class ReadsBuffer : public Reads {
public:
    explicit ReadsBuffer(const std::string& document) : document_(document) {}

    void call() override {
        sets_ = XML2Partition::getPartitionMetadataFromBuffer(
            reinterpret_cast<const unsigned char*>(document_.data()),
            static_cast<unsigned>(document_.size()), &model_.partition);
    }

private:
    const std::string& document_;
};

class ReadsString : public Reads {
public:
    explicit ReadsString(const Utf16Text& document) : document_(document) {}

    void call() override {
        sets_ = XML2Partition::getPartitionMetadataFromString(document_, &model_.partition);
    }

private:
    const Utf16Text& document_;
};

class ReadsFile : public Reads {
public:
    explicit ReadsFile(const Utf16Text& path) : path_(path) {}

    void call() override {
        sets_ = XML2Partition::getPartitionMetadataFromFile(path_.c_str(), &model_.partition);
    }

private:
    const Utf16Text& path_;
};

void sweepBuffer(const std::string& document) {
    sweep([&] { return std::make_unique<ReadsBuffer>(document); }, outOfMemory);
}

using ReaderWithoutMemory = WithoutMemory;

TEST_F(ReaderWithoutMemory, saysSoOfADocumentWithLinks) { sweepBuffer(richDocument(false)); }

TEST_F(ReaderWithoutMemory, saysSoOfADocumentWithNestedSets) { sweepBuffer(richDocument(true)); }

TEST_F(ReaderWithoutMemory, saysSoOfText) {
    const Utf16Text document = Platform::fromUtf8(R"(<?xml version="1.0" encoding="UTF-16"?>)" +
                                                  richDocument(false).substr(38));
    sweep([&] { return std::make_unique<ReadsString>(document); }, outOfMemory);
}

TEST_F(ReaderWithoutMemory, saysSoOfAFile) {
    const TemporaryDir folder;
    const auto path = folder.path() / "document.xml";
    std::ofstream(path, std::ios::binary) << richDocument(false);
    const Utf16Text name = Platform::fromUtf8(path.string());
    // A stream does not say why it can't open a file.
    std::set<std::string> allowed = outOfMemory;
    allowed.insert("13 " + path.string() + ": can't be ");
    sweep([&] { return std::make_unique<ReadsFile>(name); }, allowed);
}

TEST_F(ReaderWithoutMemory, mayFailBeforeItFindsTheDocumentBroken) {
    sweepBuffer("<r><a x='1'>text</b></r>");
}

TEST_F(ReaderWithoutMemory, mayFailBeforeItRefusesAValue) {
    sweepBuffer("<r xmlns:rp210='urn:SMPTE:RP210' xmlns:types='urn:SMPTE:Types:MXF'><Preface>"
                "<rp210:FileLastModified>x</rp210:FileLastModified></Preface></r>");
}

TEST_F(ReaderWithoutMemory, mayFailBeforeItAsksXPathForAPrefixWithoutDeclaration) {
    sweepBuffer("<r xmlns:rp210='urn:SMPTE:RP210'><Preface rp210:InstanceUID='x'>"
                "<rp210:FileLastModified><x/></rp210:FileLastModified></Preface></r>");
}

TEST_F(ReaderWithoutMemory, makesOnTheNextUseWhatItCouldNotMakeOnTheFirst) {
    // As the sets of a document that is written would be made in this process.
    const std::string document =
        "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
        "xmlns:types='urn:SMPTE:Types:MXF'><s377m:Preface><rp210:FormatVersion>"
        "<types:MajorVersion>1</types:MajorVersion><types:MinorVersion>3</types:MinorVersion>"
        "</rp210:FormatVersion></s377m:Preface></s377m:MetadataSets>";
    sweepFirstUse([&] { return std::make_unique<ReadsBuffer>(document); });
}

class OwnErrorHandler : public xercesc::DOMErrorHandler {
public:
    bool handleError(const xercesc::DOMError&) override { return false; }
};

/// Loads a document with a parser that has an error handler.
class Loads : public Subject {
public:
    explicit Loads(const std::string& document)
        : document_(document),
          parser_(xercesc::DOMImplementation::getImplementation()->createLSParser(
              xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr)) {
        parser_->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMErrorHandler, &handler_);
    }
    ~Loads() override { parser_->release(); }

    void call() override {
        loaded_ = XMLUtils::loadDocumentFromBuffer(
            reinterpret_cast<const unsigned char*>(document_.data()), document_.size(), *parser_);
    }
    std::string result() override { return textOf(*loaded_); }
    void lookAtFailure() override {
        EXPECT_EQ(parser_->getDomConfig()->getParameter(xercesc::XMLUni::fgDOMErrorHandler),
                  &handler_);
    }

private:
    const std::string& document_;
    OwnErrorHandler handler_;
    xercesc::DOMLSParser* parser_;
    xercesc::DOMDocument* loaded_ = nullptr;
};

TEST_F(ReaderWithoutMemory, putsTheHandlersOfAParserBack) {
    const std::string document = "<r xmlns='urn:a'><a x='1'>text</a><b/></r>";
    sweep([&] { return std::make_unique<Loads>(document); },
          {"std::bad_alloc", "xercesc::OutOfMemoryException"});
}

} // namespace
} // namespace Corvid::Testing
