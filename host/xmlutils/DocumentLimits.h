#pragma once

#include "host/xmlutils/DocumentFilter.h"
#include "host/xmlutils/ElementLimits.h"

#include <array>
#include <xercesc/internal/XMLScanner.hpp>

namespace Corvid::XMLUtils {

/// Ends the parse before an element that is beyond a limit gets into the document. LoadDocument.h
/// has the limits.
class DocumentLimits final : public DocumentFilter {
public:
    /// Everything is borrowed.
    /// @param scanner  gives line and column.
    /// @param next     gets all that stays within the limits.
    DocumentLimits(const xercesc::XMLScanner& scanner, xercesc::XMLDocumentHandler& next) noexcept
        : DocumentFilter(next), scanner_(scanner) {}

    /// @throws xercesc::SAXParseException  the element is beyond a limit.
    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri,
                      const XMLCh* prefix, const Attributes& attributes, XMLSize_t attributeCount,
                      bool isEmpty, bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                    const XMLCh* prefix) override;
    void startDocument() override;

private:
    /// A name as the scanner knows it: a declaration belongs to one prefix and local name.
    struct ScannedName {
        const xercesc::XMLElementDecl* declaration;
        unsigned int uri;
    };
    bool isCounted(const ScannedName& name);

    const xercesc::XMLScanner& scanner_;
    ElementLimits limits_;
    std::array<ScannedName, 256> counted_{}; ///< some of the names of elements that came up
};

} // namespace Corvid::XMLUtils
