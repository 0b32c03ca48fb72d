#include "host/xmlutils/LoadDocument.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/XmlInput.h"

namespace Corvid::XMLUtils {

xercesc::DOMDocument* loadDocumentFromBuffer(const unsigned char* bytes, std::size_t length,
                                             xercesc::DOMLSParser& parser) {
    return parseSafely(*openBuffer(bytes, length), parser);
}

xercesc::DOMDocument* loadCleanDocumentFromBuffer(const unsigned char* bytes, std::size_t length,
                                                  xercesc::DOMLSParser& parser) {
    return parseSafely(*openBuffer(bytes, length), parser, EmptyText::leftOut);
}

xercesc::DOMDocument* loadDocumentFromFile(const Utf16Unit* path, xercesc::DOMLSParser& parser) {
    if (path == nullptr || *path == 0) {
        throw Exceptions::IOError("XML document: no path, expected the path of a file",
                                  CORVID_HERE);
    }
    return parseSafely(FileInput(path), parser);
}

} // namespace Corvid::XMLUtils
