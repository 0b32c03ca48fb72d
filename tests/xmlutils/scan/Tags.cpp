#include "tests/xmlutils/scan/Tags.h"

#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/scan/AttributeValue.h"
#include "host/xmlutils/scan/DocumentDecoder.h"
#include "host/xmlutils/scan/StartTagScanner.h"
#include "tests/xmlutils/Documents.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>

namespace Corvid::XMLUtils::Testing {

using namespace xercesc;

namespace {

std::string narrow(std::u16string_view text) { return utf8(std::u16string(text).c_str()); }

class Recorder final : public StartTagSink {
public:
    bool startTag(std::u16string_view name) override {
        tag_ = narrow(name);
        return true;
    }
    bool attribute(std::u16string_view name) override {
        tag_ += " " + narrow(name);
        return true;
    }
    bool namespaceUri(std::u16string_view uri) override {
        tag_ += "=[" + narrow(uri) + "]";
        return true;
    }
    bool endOfTag() override {
        tags.push_back(tag_);
        return true;
    }

    Tags tags;

private:
    std::string tag_;
};

class Handler final : public DefaultHandler {
public:
    void startElement(const XMLCh*, const XMLCh*, const XMLCh* name,
                      const Attributes& attributes) override {
        std::string tag = utf8(name);
        for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
            const XMLCh* const attribute = attributes.getQName(i);
            tag += " " + utf8(attribute);
            tag += declaresNamespace(attribute) ? "=[" + utf8(attributes.getValue(i)) + "]" : "";
        }
        tags.push_back(tag);
    }
    void error(const SAXParseException& problem) override { throw problem; }
    void fatalError(const SAXParseException& problem) override { throw problem; }

    Tags tags;
};

} // namespace

Tags scannedTags(std::string_view document, std::size_t blockSize, const XMLCh* encoding) {
    Initializer::instance();
    Recorder recorder;
    StartTagScanner scanner(recorder);
    DocumentDecoder decoder(encoding);
    for (std::size_t at = 0; at < document.size(); at += blockSize) {
        const std::string block(document.substr(at, blockSize));
        decoder.take(reinterpret_cast<const XMLByte*>(block.data()), block.size());
        for (auto piece = decoder.next(); !piece.empty(); piece = decoder.next()) {
            scanner.scan(piece);
        }
    }
    return recorder.tags;
}

Tags parsedTags(std::string_view document, const XMLCh* encoding) {
    Initializer::instance();
    Handler handler;
    const std::unique_ptr<SAX2XMLReader> reader(XMLReaderFactory::createXMLReader());
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(XMLUni::fgSAX2CoreNameSpacePrefixes, true);
    reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
    reader->setContentHandler(&handler);
    reader->setErrorHandler(&handler);
    MemBufInputSource input(reinterpret_cast<const XMLByte*>(document.data()), document.size(),
                            u"");
    input.setEncoding(encoding);
    try {
        reader->parse(input);
    } catch (const SAXParseException&) {
        // The tags up to there count.
    }
    return handler.tags;
}

} // namespace Corvid::XMLUtils::Testing
