#include "bench/Conversions.h"

#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/mxf/File.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/RichModel.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::Bench {

namespace {

using Testing::headerPartitionOf;
using Testing::Model;
using Octets = std::vector<unsigned char>;

struct NoWarnings : mxf::WarningSink {
    void warn(const mxf::Warning&) override {}
};

/// Lets a conversion end as it must.
template <class Exception, class Body> void expectThrown(Body body) {
    try {
        body();
    } catch (const Exception&) {
        return;
    }
    throw std::runtime_error("a conversion that must fail succeeds");
}

void expect(bool isTrue, const char* what) {
    if (!isTrue) {
        throw std::runtime_error(std::string("unexpected: ") + what);
    }
}

Utf16Text textOf(Model& model, bool referencesAsValues) {
    Utf16Text text;
    XMLBuilder::partition2XML(&model.partition, referencesAsValues, false,
                              XMLUtils::EncodingType::utf8, text);
    return text;
}

void readBuffer(Model& model, const std::string& xml) {
    XML2Partition::getPartitionMetadataFromBuffer(
        reinterpret_cast<const unsigned char*>(xml.data()), static_cast<unsigned>(xml.size()),
        &model.partition);
}

mxf::HeaderMetadata readMxf(const std::string& path) {
    NoWarnings warnings;
    return mxf::File(path, Testing::emptyModel().partition.partitionDictionary().dictionary(),
                     warnings)
        .readMetadata();
}

void writesDocuments(const ConversionInputs&) {
    Model model = Testing::emptyModel();
    Testing::fillRichly(model);
    for (const bool referencesAsValues : {false, true}) {
        expect(bool(XMLBuilder::partition2XML(&model.partition, referencesAsValues, false)),
               "no document");
    }
}

void writesText(const ConversionInputs& inputs) {
    Model model = Testing::emptyModel();
    Testing::fillRichly(model);
    expect(textOf(model, true) == inputs.nested, "another text");
}

void writesBytes(const ConversionInputs& inputs) {
    Model model = Testing::emptyModel();
    Testing::fillRichly(model);
    const auto document = XMLBuilder::partition2XML(&model.partition, true, false);
    XMLUtils::ReplaceInvalidCharacters invalid;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented,
                        invalid, sink);
    expect(sink.serializedSize() == inputs.nestedBytes.size(), "other bytes");
}

void readsText(const ConversionInputs& inputs) {
    Model model = Testing::emptyModel();
    XML2Partition::getPartitionMetadataFromString(inputs.links, &model.partition);
    expect(headerPartitionOf(model.partition).size() > 1000, "too little KLV");
}

void readsBuffer(const ConversionInputs& inputs) {
    Model model = Testing::emptyModel();
    readBuffer(model, inputs.nestedBytes);
    expect(bool(XMLBuilder::partition2XML(&model.partition, false, false)), "no document");
}

void readsFile(const ConversionInputs& inputs) {
    Model model = Testing::emptyModel();
    XML2Partition::getPartitionMetadataFromFile(Platform::fromUtf8(inputs.xml).c_str(),
                                                &model.partition);
}

void readsMxf(const ConversionInputs& inputs) {
    const auto read = readMxf(inputs.mxf);
    expect(bool(XMLBuilder::partition2XML(read.metadata.get(), false, false)), "no document");
}

void readsMxfThatIsCutOff(const ConversionInputs& inputs) {
    expect(!readMxf(inputs.cutOff).isWhole, "whole metadata");
}

void refusesWhatIsNoMxf(const ConversionInputs& inputs) {
    expectThrown<Exceptions::InvalidFormat>([&] { readMxf(inputs.noMxf); });
    expectThrown<Exceptions::IOError>([&] { readMxf(inputs.noMxf + ".absent"); });
}

void refusesBrokenDocuments(const ConversionInputs& inputs) {
    Model model = Testing::emptyModel();
    const std::string half = inputs.nestedBytes.substr(0, inputs.nestedBytes.size() / 2);
    expectThrown<Exceptions::ParseError>([&] { readBuffer(model, half); });
    expectThrown<Exceptions::ParseError>([&] { readBuffer(model, ""); });
    expectThrown<Exceptions::ParseError>([&] { readBuffer(model, "<!DOCTYPE r><r/>"); });
}

void refusesValues(const ConversionInputs&) {
    Model model = Testing::emptyModel();
    const std::string begin = "<r xmlns:rp210='urn:SMPTE:RP210' xmlns:types='urn:SMPTE:Types:MXF'"
                              "><Preface><rp210:FileLastModified>";
    const std::string end = "</rp210:FileLastModified></Preface></r>";
    expectThrown<Exceptions::InvalidFormat>([&] { readBuffer(model, begin + "x" + end); });
    // What has no declaration is a matter for XPath.
    expectThrown<Exceptions::ParseError>([&] {
        readBuffer(model, "<r xmlns:rp210='urn:SMPTE:RP210'><Preface><rp210:FileLastModified>"
                          "<x/></rp210:FileLastModified></Preface></r>");
    });
}

void refusesCharacters(const ConversionInputs&) {
    Model model = Testing::emptyModel();
    const unsigned short text[] = {'a', 1, 0};
    model.set("Preface", 1);
    model.value(model.set("Thing", 2), "UTF16String", Types::UTF16String(text));
    expectThrown<Exceptions::InvalidFormat>([&] { textOf(model, false); });
}

void refusesDictionaries(const ConversionInputs&) {
    MetaMetadata::Dictionary::Texts texts;
    texts.push_back({"bad.dict", "namespace t urn:test\nset t:Thing 06.0e no:parent concrete\n"});
    expectThrown<Exceptions::InvalidDictionary>(
        [&] { MetaMetadata::Dictionary::extend(*MetaMetadata::Dictionary::builtIn(), texts); });
}

constexpr void (*conversions[])(const ConversionInputs&) = {
    writesDocuments,
    writesText,
    writesBytes,
    readsText,
    readsBuffer,
    readsFile,
    readsMxf,
    readsMxfThatIsCutOff,
    refusesWhatIsNoMxf,
    refusesValues,
    refusesCharacters,
    refusesDictionaries,
    refusesBrokenDocuments,
};

void write(const std::string& path, const void* bytes, std::size_t count) {
    std::ofstream(path, std::ios::binary)
        .write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
}

} // namespace

ConversionInputs::ConversionInputs() {
    Model model = Testing::emptyModel();
    Testing::fillRichly(model);
    links = textOf(model, false);
    nested = textOf(model, true);
    nestedBytes = Platform::toUtf8(nested);
    const Octets bytes = headerPartitionOf(model.partition);
    write(xml, nestedBytes.data(), nestedBytes.size());
    write(mxf, bytes.data(), bytes.size());
    write(cutOff, bytes.data(), bytes.size() / 2);
    write(noMxf, nestedBytes.data(), nestedBytes.size());
}

void convert(const ConversionInputs& inputs, std::size_t number) {
    conversions[number % std::size(conversions)](inputs);
}

void writeDocument() {
    Model model = Testing::emptyModel();
    Testing::fillRichly(model);
    expect(bool(XMLBuilder::partition2XML(&model.partition, false, false)), "no document");
}

void giveDocumentUp() {
    Model model = Testing::emptyModel();
    model.set("ContentStorage", 1);
    expect(!XMLBuilder::partition2XML(&model.partition, false, false), "a document");
}

} // namespace Corvid::Bench
