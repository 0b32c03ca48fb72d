#include "XMLBuilder/reader/dom/DomNodes.h"

#include "XMLBuilder/format/HashedName.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/ExtensionTags.h"
#include "XMLBuilder/reader/nodes/NodeList.h"

#include <memory>
#include <string>

#ifdef CORVID_WITH_XQILLA
#include <xqilla/xqilla-dom3.hpp>
#endif

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

const char16_t* orEmpty(const XMLCh* text) { return text == nullptr ? u"" : text; }

const DOMNode* domOf(const DocumentNode& node) { return static_cast<const DOMNode*>(node.origin); }

DocumentNode::Kind kindOf(const DOMNode& node) {
    switch (node.getNodeType()) {
    case DOMNode::ELEMENT_NODE:
        return DocumentNode::Kind::element;
    case DOMNode::ATTRIBUTE_NODE:
        return DocumentNode::Kind::attribute;
    case DOMNode::TEXT_NODE:
    case DOMNode::CDATA_SECTION_NODE:
        return DocumentNode::Kind::text;
    default:
        return DocumentNode::Kind::other;
    }
}

/// A node without what it holds.
DocumentNode& addNode(NodePool& pool, const DOMNode& node, const DocumentNode* parent) {
    DocumentNode& copy = pool.add();
    copy.kind = kindOf(node);
    copy.parent = parent;
    copy.origin = &node;
    if (copy.kind == DocumentNode::Kind::element || copy.kind == DocumentNode::Kind::attribute) {
        copy.name = orEmpty(node.getNodeName());
        copy.local = orEmpty(node.getLocalName());
        copy.localHash = HashedName::of(copy.local);
        copy.uri = node.getNamespaceURI();
    }
    if (copy.kind != DocumentNode::Kind::element) {
        copy.value = orEmpty(node.getNodeValue());
        return copy;
    }
    const auto& attributes = *static_cast<const DOMElement&>(node).getAttributes();
    const XMLSize_t count = attributes.getLength();
    NodeList list(copy.firstAttribute);
    for (XMLSize_t i = 0; i != count; ++i) {
        list.append(addNode(pool, *attributes.item(i), &copy));
    }
    return copy;
}

/// A node with all that it holds. Elements may be in each other as deep as a document allows, so
/// nothing here works by calls that nest with them.
const DocumentNode& addTree(NodePool& pool, const DOMNode& top, const DocumentNode* parent) {
    DocumentNode& made = addNode(pool, top, parent);
    struct Level {
        DocumentNode* element;
        const DOMNode* nextChild;
        NodeList children;
    };
    const auto levelOf = [](DocumentNode& element, const DOMNode& node) {
        const bool isElement = element.kind == DocumentNode::Kind::element;
        return Level{&element, isElement ? node.getFirstChild() : nullptr,
                     NodeList(element.firstChild)};
    };
    std::vector<Level> open{levelOf(made, top)};
    while (!open.empty()) {
        Level& level = open.back();
        const DOMNode* const node = level.nextChild;
        if (node == nullptr) {
            open.pop_back();
            continue;
        }
        level.nextChild = node->getNextSibling();
        DocumentNode& child = addNode(pool, *node, level.element);
        level.children.append(child);
        if (child.kind == DocumentNode::Kind::element) {
            open.push_back(levelOf(child, *node));
        }
    }
    return made;
}

} // namespace

DomNodes::DomNodes(const DOMElement& root) : root_(addNode(ofRoot_, root, nullptr)) {}

const DocumentNode& DomNodes::copyOf(const DOMNode& child) {
    ofChild_.clear();
    return addTree(ofChild_, child, &root_);
}

void DomNodes::nameTags(ExtensionTags& tags) {
    const auto& root = *static_cast<const DOMElement*>(domOf(root_));
    NodePool pool;
    const auto each = [&](const char16_t* name, auto visit) {
        const auto& found = *root.getElementsByTagNameNS(Names::groups.uri, Names::localPart(name));
        // Up to the first null: to ask for the length would make the list begin anew each time.
        for (XMLSize_t i = 0; const auto* element = found.item(i); ++i) {
            pool.clear();
            visit(addTree(pool, *element, nullptr));
        }
    };
    each(Names::extensionElements, [&tags](const DocumentNode& container) {
        for (const auto* child = firstElement(container); child != nullptr;
             child = nextElement(*child)) {
            tags.keepTag(attributeValue(*child, Names::staticLocalTag));
        }
    });
    each(Names::darkMetadata, [&tags](const DocumentNode& set) { tags.keepTagsIn(set); });
}

#ifdef CORVID_WITH_XQILLA

namespace {

struct Release {
    template <class T> void operator()(T* object) const { object->release(); }
};
template <class T> using Released = std::unique_ptr<T, Release>;

} // namespace

void DomNodes::refusePrefix(const DocumentNode& context, const char16_t* prefix) const {
    const DOMNode* const from = domOf(context);
    xercesc::DOMDocument& document = *from->getOwnerDocument();
    const Released<xercesc::DOMXPathNSResolver> names(document.createNSResolver(from));
    const std::u16string text = std::u16string(u"./") + prefix + u":Element";
    const Released<xercesc::DOMXPathExpression> expression(
        document.createExpression(text.c_str(), names.get()));
    const Released<xercesc::DOMXPathResult> result(
        expression->evaluate(from, xercesc::DOMXPathResult::FIRST_RESULT_TYPE, nullptr));
}

#else

void DomNodes::refusePrefix(const DocumentNode&, const char16_t*) const {
    throw xercesc::DOMXPathException(static_cast<short>(xercesc::DOMException::NAMESPACE_ERR), 0);
}

#endif

} // namespace Corvid::XMLBuilder
