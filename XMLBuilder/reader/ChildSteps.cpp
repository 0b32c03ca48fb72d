#include "XMLBuilder/reader/ChildSteps.h"

#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>

#ifdef CORVID_WITH_XQILLA
#include <xqilla/xqilla-dom3.hpp>
#endif

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLString;

std::uint32_t hashOf(const XMLCh* text) noexcept {
    std::uint32_t hash = 2166136261U; // FNV-1a
    for (; *text != 0; ++text) {
        hash = (hash ^ *text) * 16777619U;
    }
    return hash;
}

bool isNCName(const XMLCh* text) {
    return xercesc::XMLChar1_0::isValidNCName(text, XMLString::stringLen(text));
}

DOMElement* elementFrom(DOMNode* node) {
    while (node != nullptr && node->getNodeType() != DOMNode::ELEMENT_NODE) {
        node = node->getNextSibling();
    }
    return static_cast<DOMElement*>(node);
}

bool hasName(const DOMElement& element, const XMLCh* name, const XMLCh* uri) {
    return XMLString::equals(element.getLocalName(), name) &&
           XMLString::equals(element.getNamespaceURI(), uri);
}

DOMElement* namedFrom(DOMElement* element, const XMLCh* name, const XMLCh* uri) {
    while (element != nullptr && !hasName(*element, name, uri)) {
        element = elementFrom(element->getNextSibling());
    }
    return element;
}

} // namespace

ChildStep::ChildStep(const XMLCh* prefix, const XMLCh* name)
    : prefix_(prefix), name_(name), hash_(hashOf(name)),
      plain_(isNCName(prefix) && isNCName(name)) {}

void ChildSteps::reset(const DOMNode& context) {
    entries_.clear();
    hashes_ = 0;
    for (auto* child = firstElement(context); child != nullptr; child = nextElement(*child)) {
        const std::uint32_t hash = hashOf(child->getLocalName());
        entries_.push_back({hash, static_cast<std::uint32_t>(entries_.size()), child});
        hashes_ |= bitOf(hash);
    }
    std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.hash, a.order) < std::tie(b.hash, b.order);
    });
}

DOMElement* ChildSteps::first(const ChildStep& step, const XMLCh* uri) const {
    auto entry = std::lower_bound(entries_.begin(), entries_.end(), step.hash_,
                                  [](const Entry& a, std::uint32_t hash) { return a.hash < hash; });
    for (; entry != entries_.end() && entry->hash == step.hash_; ++entry) {
        if (hasName(*entry->element, step.name_, uri)) {
            return entry->element;
        }
    }
    return nullptr;
}

DOMElement* ChildSteps::first(const DOMNode& context, const XMLCh* name, const XMLCh* uri) {
    return namedFrom(firstElement(context), name, uri);
}

DOMElement* ChildSteps::next(const DOMElement& found, const XMLCh* name, const XMLCh* uri) {
    return namedFrom(nextElement(found), name, uri);
}

DOMElement* ChildSteps::firstElement(const DOMNode& context) {
    return elementFrom(context.getFirstChild());
}

DOMElement* ChildSteps::nextElement(const DOMElement& found) {
    return elementFrom(found.getNextSibling());
}

#ifdef CORVID_WITH_XQILLA

namespace {

struct Release {
    template <class T> void operator()(T* object) const { object->release(); }
};
template <class T> using Released = std::unique_ptr<T, Release>;

} // namespace

DOMNode* ChildSteps::evaluate(const DOMNode& context, const DOMNode& resolver,
                              const ChildStep& step, const XMLCh* uri) {
    xercesc::DOMDocument& document = *context.getOwnerDocument();
    const Released<xercesc::DOMXPathNSResolver> names(document.createNSResolver(&resolver));
    if (uri != nullptr) {
        static_cast<XQillaNSResolver&>(*names).addNamespaceBinding(step.prefix_, uri);
    }
    const std::u16string text = std::u16string(u"./") + step.prefix_ + u':' + step.name_;
    const Released<xercesc::DOMXPathExpression> expression(
        document.createExpression(text.c_str(), names.get()));
    const Released<xercesc::DOMXPathResult> result(
        expression->evaluate(&context, xercesc::DOMXPathResult::FIRST_RESULT_TYPE, nullptr));
    return result->isNode() ? result->getNodeValue() : nullptr;
}

#else

DOMNode* ChildSteps::evaluate(const DOMNode& context, const DOMNode&, const ChildStep& step,
                              const XMLCh* uri) {
    if (step.plain_ && uri != nullptr) {
        return first(context, step.name_, uri);
    }
    const short code = step.plain_
                           ? static_cast<short>(xercesc::DOMException::NAMESPACE_ERR)
                           : static_cast<short>(xercesc::DOMXPathException::INVALID_EXPRESSION_ERR);
    throw xercesc::DOMXPathException(code, 0);
}

#endif

} // namespace Corvid::XMLBuilder
