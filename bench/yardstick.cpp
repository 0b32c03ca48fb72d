// What the command is measured against: the same libraries without Corvid.

#include <cstring>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLChar.hpp>
#ifdef CORVID_WITH_XQILLA
#include <xqilla/utils/XQillaPlatformUtils.hpp>
#endif

namespace {

/// Leaves out the line breaks and indentation that a document has in a file only.
class Parser : public xercesc::XercesDOMParser {
public:
    void docCharacters(const XMLCh* text, XMLSize_t length, bool isCData) override {
        if (!xercesc::XMLChar1_0::isAllSpaces(text, length)) {
            XercesDOMParser::docCharacters(text, length, isCData);
        }
    }
};

void holdDocument(const char* path) {
    Parser parser;
    parser.setDoNamespaces(true);
    parser.parse(path);
    if (parser.getErrorCount() != 0 || parser.getDocument()->getDocumentElement() == nullptr) {
        throw std::runtime_error("no document");
    }
}

/// Takes each event and does nothing with it.
class Counter : public xercesc::DefaultHandler {
public:
    void startElement(const XMLCh*, const XMLCh*, const XMLCh*,
                      const xercesc::Attributes&) override {
        ++elements_;
    }
    bool hasElements() const { return elements_ != 0; }

private:
    std::size_t elements_ = 0;
};

void passDocument(const char* path) {
    const std::unique_ptr<xercesc::SAX2XMLReader> reader(
        xercesc::XMLReaderFactory::createXMLReader());
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, true);
    Counter counter;
    reader->setContentHandler(&counter);
    reader->setErrorHandler(&counter);
    reader->parse(path);
    if (reader->getErrorCount() != 0 || !counter.hasElements()) {
        throw std::runtime_error("no document");
    }
}

void inXerces(void (*work)(const char*), const char* path) {
    xercesc::XMLPlatformUtils::Initialize();
    work(path);
    xercesc::XMLPlatformUtils::Terminate();
}

} // namespace

/// yardstick platform   brings the XML libraries up and down
/// yardstick dom FILE   loads a document
/// yardstick sax FILE   parses a document and keeps nothing of it
int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "platform") == 0) {
#ifdef CORVID_WITH_XQILLA
        XQillaPlatformUtils::initialize();
        XQillaPlatformUtils::terminate();
#else
        xercesc::XMLPlatformUtils::Initialize();
        xercesc::XMLPlatformUtils::Terminate();
#endif
        return 0;
    }
    if (argc == 3 && std::strcmp(argv[1], "dom") == 0) {
        inXerces(holdDocument, argv[2]);
        return 0;
    }
    if (argc == 3 && std::strcmp(argv[1], "sax") == 0) {
        inXerces(passDocument, argv[2]);
        return 0;
    }
    std::cerr << "yardstick platform | yardstick dom FILE | yardstick sax FILE\n";
    return 2;
}
