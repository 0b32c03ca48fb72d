#pragma once

#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/xmlutils/MarkupWriter.h"

#include <functional>
#include <unordered_map>
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
    /// A name taken apart.
    struct Parts {
        XMLUtils::MarkupWriter::Name name;
        Text local;
    };
    /// A name is known by where its texts are, for they stay there.
    struct HashOf {
        std::size_t operator()(const Name& name) const noexcept {
            return std::hash<const void*>()(name.qualified);
        }
    };
    struct IsSame {
        bool operator()(const Name& a, const Name& b) const noexcept {
            return a.qualified == b.qualified && a.uri == b.uri;
        }
    };

    const Parts& partsOf(const Name& name);
    void startContent(bool isText);

    XMLUtils::MarkupWriter& markup_;
    std::unordered_map<Name, Parts, HashOf, IsSame> parts_;
    bool isStarted_ = true; ///< the content of the open element, or there is none
    std::vector<XMLUtils::MarkupWriter::Attribute> attributes_; ///< of one element
};

} // namespace Corvid::XMLBuilder
