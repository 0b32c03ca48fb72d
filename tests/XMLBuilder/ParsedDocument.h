#pragma once

#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/LoadDocument.h"
#include "tests/XMLBuilder/XmlOf.h"

#include <memory>

namespace Corvid::Testing {

struct Release {
    template <class T> void operator()(T* object) const { object->release(); }
};

/// A document from text, made as the reader makes its documents.
class ParsedDocument {
public:
    explicit ParsedDocument(const std::string& xml)
        : parser_(XMLUtils::Initializer::instance().domImplementation()->createLSParser(
              xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr)),
          document_(XMLUtils::loadDocumentFromBuffer(
              reinterpret_cast<const unsigned char*>(xml.data()), xml.size(), *parser_)) {}

    xercesc::DOMElement& root() { return *document_->getDocumentElement(); }

private:
    std::unique_ptr<xercesc::DOMLSParser, Release> parser_;
    xercesc::DOMDocument* document_;
};

} // namespace Corvid::Testing
