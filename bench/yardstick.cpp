// What the command is measured against: the same libraries without Corvid.

#include <cstring>
#include <iostream>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
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

} // namespace

/// yardstick platform   brings the XML libraries up and down
/// yardstick dom FILE   loads a document
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
        xercesc::XMLPlatformUtils::Initialize();
        holdDocument(argv[2]);
        xercesc::XMLPlatformUtils::Terminate();
        return 0;
    }
    std::cerr << "yardstick platform | yardstick dom FILE\n";
    return 2;
}
