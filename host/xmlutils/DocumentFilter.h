#pragma once

#include <xercesc/framework/XMLDocumentHandler.hpp>

namespace Corvid::XMLUtils {

/// Stands between a scanner and the parser that builds the document, and passes everything on.
class DocumentFilter : public xercesc::XMLDocumentHandler {
public:
    using Attributes = xercesc::RefVectorOf<xercesc::XMLAttr>;

    /// @param next  borrowed.
    explicit DocumentFilter(xercesc::XMLDocumentHandler& next) noexcept : next_(next) {}

    void startDocument() override { next_.startDocument(); }
    void endDocument() override { next_.endDocument(); }
    void resetDocument() override { next_.resetDocument(); }
    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri,
                      const XMLCh* prefix, const Attributes& attributes, XMLSize_t attributeCount,
                      bool isEmpty, bool isRoot) override {
        next_.startElement(declaration, uri, prefix, attributes, attributeCount, isEmpty, isRoot);
    }
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                    const XMLCh* prefix) override {
        next_.endElement(declaration, uri, isRoot, prefix);
    }
    void docCharacters(const XMLCh* text, XMLSize_t length, bool cdata) override {
        next_.docCharacters(text, length, cdata);
    }
    void docComment(const XMLCh* text) override { next_.docComment(text); }
    void docPI(const XMLCh* target, const XMLCh* data) override { next_.docPI(target, data); }
    void ignorableWhitespace(const XMLCh* text, XMLSize_t length, bool cdata) override {
        next_.ignorableWhitespace(text, length, cdata);
    }
    void startEntityReference(const xercesc::XMLEntityDecl& entity) override {
        next_.startEntityReference(entity);
    }
    void endEntityReference(const xercesc::XMLEntityDecl& entity) override {
        next_.endEntityReference(entity);
    }
    void XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
                 const XMLCh* recognised) override {
        next_.XMLDecl(version, encoding, standalone, recognised);
    }

private:
    xercesc::XMLDocumentHandler& next_;
};

} // namespace Corvid::XMLUtils
