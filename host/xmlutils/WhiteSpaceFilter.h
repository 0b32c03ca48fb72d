#pragma once

#include "host/xmlutils/DocumentFilter.h"

#include <string>

namespace Corvid::XMLUtils {

/// Keeps every text out of the document that cleanEmptyTextNodes() would remove from it.
class WhiteSpaceFilter final : public DocumentFilter {
public:
    using DocumentFilter::DocumentFilter;

    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri,
                      const XMLCh* prefix, const Attributes& attributes, XMLSize_t attributeCount,
                      bool isEmpty, bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                    const XMLCh* prefix) override;
    void docCharacters(const XMLCh* text, XMLSize_t length, bool cdata) override;
    void docComment(const XMLCh* text) override;
    void docPI(const XMLCh* target, const XMLCh* data) override;

private:
    void endText() noexcept;

    std::u16string held_;   ///< the white space that a text starts with
    bool isInText_ = false; ///< the parser has the beginning of the text already
};

} // namespace Corvid::XMLUtils
