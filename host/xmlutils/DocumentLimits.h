#pragma once

#include "host/xmlutils/ElementLimits.h"

#include <xercesc/framework/XMLDocumentHandler.hpp>
#include <xercesc/internal/XMLScanner.hpp>

namespace Corvid::XMLUtils {

/// Stands between a scanner and the parser that builds the document, and ends the parse before an
/// element that is beyond a limit gets into the document. LoadDocument.h tells the limits.
class DocumentLimits final : public xercesc::XMLDocumentHandler {
public:
    using Attributes = xercesc::RefVectorOf<xercesc::XMLAttr>;

    /// Everything is borrowed.
    /// @param scanner  tells line and column.
    /// @param next     gets all that stays within the limits.
    DocumentLimits(const xercesc::XMLScanner& scanner, xercesc::XMLDocumentHandler& next) noexcept
        : scanner_(scanner), next_(next) {}

    /// @throws xercesc::SAXParseException  the element is beyond a limit.
    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri,
                      const XMLCh* prefix, const Attributes& attributes, XMLSize_t attributeCount,
                      bool isEmpty, bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                    const XMLCh* prefix) override;
    void startDocument() override;

    void docCharacters(const XMLCh* text, XMLSize_t length, bool cdata) override {
        next_.docCharacters(text, length, cdata);
    }
    void docComment(const XMLCh* text) override { next_.docComment(text); }
    void docPI(const XMLCh* target, const XMLCh* data) override { next_.docPI(target, data); }
    void endDocument() override { next_.endDocument(); }
    void endEntityReference(const xercesc::XMLEntityDecl& entity) override {
        next_.endEntityReference(entity);
    }
    void ignorableWhitespace(const XMLCh* text, XMLSize_t length, bool cdata) override {
        next_.ignorableWhitespace(text, length, cdata);
    }
    void resetDocument() override { next_.resetDocument(); }
    void startEntityReference(const xercesc::XMLEntityDecl& entity) override {
        next_.startEntityReference(entity);
    }
    void XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
                 const XMLCh* recognised) override {
        next_.XMLDecl(version, encoding, standalone, recognised);
    }

private:
    const xercesc::XMLScanner& scanner_;
    xercesc::XMLDocumentHandler& next_;
    ElementLimits limits_;
};

} // namespace Corvid::XMLUtils
