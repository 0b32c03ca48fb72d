#include "host/xmlutils/LoadDocument.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/XmlInput.h"

#include <xercesc/framework/MemBufInputSource.hpp>

namespace Corvid::XMLUtils {

xercesc::DOMDocument* loadDocumentFromBuffer(const unsigned char* bytes, std::size_t length,
                                             xercesc::DOMLSParser& parser) {
    if (length == 0) {
        throwParseError(1, 1, "empty document, expected a root element");
    }
    if (bytes == nullptr) {
        throw Exceptions::InvalidArgument(
            "XML document: no bytes, expected " + std::to_string(length), CORVID_HERE);
    }
    const Utf16Form form = recogniseUtf16(bytes, length);
    xercesc::MemBufInputSource input(bytes + form.markSize, length - form.markSize, u"");
    input.setCopyBufToStream(false);
    if (form.encoding != nullptr) {
        input.setEncoding(form.encoding);
    }
    return parseSafely(input, parser);
}

xercesc::DOMDocument* loadDocumentFromFile(const Utf16Unit* path, xercesc::DOMLSParser& parser) {
    if (path == nullptr || *path == 0) {
        throw Exceptions::IOError("XML document: no path, expected the path of a file",
                                  CORVID_HERE);
    }
    return parseSafely(FileInput(path), parser);
}

} // namespace Corvid::XMLUtils
