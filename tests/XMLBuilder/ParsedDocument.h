#pragma once

#include "XMLBuilder/reader/dom/DomNodes.h"
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
              reinterpret_cast<const unsigned char*>(xml.data()), xml.size(), *parser_)),
          nodes_(root()), tree_(nodes_.copyOf(root())) {}

    xercesc::DOMElement& root() { return *document_->getDocumentElement(); }
    /// The root as the reader sees it, with all that it holds.
    const XMLBuilder::DocumentNode& tree() const { return tree_; }
    XMLBuilder::DomNodes& nodes() { return nodes_; }

private:
    std::unique_ptr<xercesc::DOMLSParser, Release> parser_;
    xercesc::DOMDocument* document_;
    XMLBuilder::DomNodes nodes_;
    const XMLBuilder::DocumentNode& tree_;
};

} // namespace Corvid::Testing
