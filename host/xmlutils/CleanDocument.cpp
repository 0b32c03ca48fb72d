#include "host/xmlutils/CleanDocument.h"

#include <xercesc/dom/DOMNode.hpp>

namespace Corvid::XMLUtils {

namespace {

using xercesc::DOMNode;

bool isWhiteSpace(const XMLCh* text) {
    for (; *text != 0; ++text) {
        if (*text != u' ' && *text != u'\n' && *text != u'\t' && *text != u'\r') {
            return false;
        }
    }
    return true;
}

/// The node that follows `node` and what is below it in document order, within `top`; or null.
DOMNode* nextBehind(DOMNode* node, const DOMNode* top) {
    while (node != top) {
        if (DOMNode* const sibling = node->getNextSibling()) {
            return sibling;
        }
        node = node->getParentNode();
    }
    return nullptr;
}

} // namespace

void cleanEmptyTextNodes(DOMNode& top) {
    DOMNode* node = top.getFirstChild();
    while (node != nullptr) {
        if (node->getNodeType() == DOMNode::TEXT_NODE && isWhiteSpace(node->getNodeValue())) {
            DOMNode* const next = nextBehind(node, &top);
            node->getParentNode()->removeChild(node)->release();
            node = next;
            continue;
        }
        DOMNode* const child = node->getFirstChild();
        node = child != nullptr ? child : nextBehind(node, &top);
    }
}

} // namespace Corvid::XMLUtils
