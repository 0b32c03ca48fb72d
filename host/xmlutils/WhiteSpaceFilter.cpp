#include "host/xmlutils/WhiteSpaceFilter.h"

#include "host/xmlutils/WhiteSpace.h"

namespace Corvid::XMLUtils {

using namespace xercesc;

void WhiteSpaceFilter::startElement(const XMLElementDecl& declaration, unsigned int uri,
                                    const XMLCh* prefix, const Attributes& attributes,
                                    XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
    endText();
    DocumentFilter::startElement(declaration, uri, prefix, attributes, attributeCount, isEmpty,
                                 isRoot);
}

void WhiteSpaceFilter::endElement(const XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                                  const XMLCh* prefix) {
    endText();
    DocumentFilter::endElement(declaration, uri, isRoot, prefix);
}

/// A text comes in pieces, for the scanner's buffer ends in the midst of it.
void WhiteSpaceFilter::docCharacters(const XMLCh* text, XMLSize_t length, bool cdata) {
    if (cdata) {
        endText();
    } else if (!isInText_) {
        if (isWhiteSpace({text, length})) {
            held_.append(text, length);
            return;
        }
        if (!held_.empty()) {
            DocumentFilter::docCharacters(held_.c_str(), held_.size(), false);
        }
        isInText_ = true;
    }
    DocumentFilter::docCharacters(text, length, cdata);
}

void WhiteSpaceFilter::docComment(const XMLCh* text) {
    endText();
    DocumentFilter::docComment(text);
}

void WhiteSpaceFilter::docPI(const XMLCh* target, const XMLCh* data) {
    endText();
    DocumentFilter::docPI(target, data);
}

void WhiteSpaceFilter::endText() noexcept {
    held_.clear();
    isInText_ = false;
}

} // namespace Corvid::XMLUtils
