#pragma once

#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/base/Templates.h"

#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::XMLBuilder {

/// Makes the nodes of a document.
class DomSink final : public DocumentSink {
public:
    using DocumentSink::startElement;

    /// @param element  what comes becomes its content, and it is not ended itself; null for a new
    ///                 document. Borrowed.
    explicit DomSink(xercesc::DOMElement* element = nullptr);

    /// The document, which nobody owns until it is asked for: what an exception leaves unfinished
    /// is left to the process.
    Templates::auto_ptr<xercesc::DOMNode> document() const {
        return Templates::auto_ptr<xercesc::DOMNode>(document_);
    }

    void startElement(const Name& name, const Attribute* attributes, std::size_t count) override;
    void endElement() override;
    void text(Text text) override;

private:
    void createDocument(const Name& root);

    xercesc::DOMDocument* document_ = nullptr;
    /// From the outermost element to the one that is written. A node knows its parent, but Xerces
    /// casts twice to tell it.
    std::vector<xercesc::DOMElement*> open_;
};

} // namespace Corvid::XMLBuilder
