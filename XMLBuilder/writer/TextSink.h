#pragma once

#include "XMLBuilder/writer/DocumentSink.h"
#include "host/xmlutils/MarkupWriter.h"

#include <vector>

namespace Corvid::XMLBuilder {

/// Writes the text that serialising the document made by a DomSink gives.
class TextSink final : public DocumentSink {
public:
    using DocumentSink::startElement;

    /// @param markup  at the start of a document. Borrowed.
    explicit TextSink(XMLUtils::MarkupWriter& markup) : markup_(markup) {}

    void startElement(const Name& name, const Attribute* attributes, std::size_t count) override;
    void endElement() override;
    void text(Text text) override;

private:
    void startContent(bool isText);

    XMLUtils::MarkupWriter& markup_;
    bool isStarted_ = true; ///< the content of the open element, or there is none
    std::vector<XMLUtils::MarkupWriter::Attribute> attributes_; ///< of one element
};

} // namespace Corvid::XMLBuilder
