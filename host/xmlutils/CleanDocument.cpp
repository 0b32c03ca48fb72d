#include "host/xmlutils/CleanDocument.h"

#include "host/xmlutils/WhiteSpace.h"

#include <vector>
#include <xercesc/dom/DOMNode.hpp>

namespace Corvid::XMLUtils {

using xercesc::DOMNode;

void cleanEmptyTextNodes(DOMNode& top) {
    // The way down is kept here, because to ask a node for its parent costs Xerces-C a search
    // through the classes of nodes.
    std::vector<DOMNode*> open = {&top};
    DOMNode* node = top.getFirstChild();
    while (!open.empty()) {
        if (node == nullptr) {
            node = open.back();
            open.pop_back();
            node = open.empty() ? nullptr : node->getNextSibling();
        } else if (DOMNode* const child = node->getFirstChild()) {
            open.push_back(node);
            node = child;
        } else {
            DOMNode* const next = node->getNextSibling();
            if (node->getNodeType() == DOMNode::TEXT_NODE && isWhiteSpace(node->getNodeValue())) {
                open.back()->removeChild(node)->release();
            }
            node = next;
        }
    }
}

} // namespace Corvid::XMLUtils
