#include "XMLBuilder/reader/PrefixScope.h"

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

constexpr std::u16string_view declaration = u"xmlns";

/// Calls visit with each namespace declaration of an element, until it says true.
template <class Visit> bool anyDeclaration(const DOMElement& element, Visit visit) {
    const auto& attributes = *element.getAttributes();
    for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
        const DOMNode& attribute = *attributes.item(i);
        const std::u16string_view name = attribute.getNodeName();
        if (name.substr(0, declaration.size()) == declaration && visit(name, attribute)) {
            return true;
        }
    }
    return false;
}

} // namespace

template <class Visit> bool PrefixScope::climb(Visit visit) const {
    const DOMNode* const end = around_ == nullptr ? nullptr : &around_->element_;
    for (const DOMNode* node = &element_;
         node != end && node != nullptr && node->getNodeType() == DOMNode::ELEMENT_NODE;
         node = node->getParentNode()) {
        if (visit(static_cast<const DOMElement&>(*node))) {
            return true;
        }
    }
    return false;
}

PrefixScope::PrefixScope(const DOMElement& root)
    : element_(root), around_(nullptr), declares_(this) {}

PrefixScope::PrefixScope(const DOMElement& element, PrefixScope& around)
    : element_(element), around_(&around), declares_(around.declares_) {
    const auto any = [](std::u16string_view, const DOMNode&) { return true; };
    if (climb([&](const DOMElement& each) { return anyDeclaration(each, any); })) {
        declares_ = this;
    }
}

const XMLCh* PrefixScope::uriOf(const XMLCh* prefix) {
    if (declares_ != this) {
        return declares_->uriOf(prefix);
    }
    for (const auto& [knownPrefix, uri] : known_) {
        if (knownPrefix == prefix) {
            return uri;
        }
    }
    const XMLCh* uri = nullptr;
    const auto declaresIt = [&](std::u16string_view name, const DOMNode& attribute) {
        const bool found = name.size() > declaration.size() && name[declaration.size()] == u':' &&
                           name.substr(declaration.size() + 1) == prefix;
        if (found) {
            uri = attribute.getNodeValue();
        }
        return found;
    };
    if (!climb([&](const DOMElement& each) { return anyDeclaration(each, declaresIt); }) &&
        around_ != nullptr) {
        uri = around_->uriOf(prefix);
    }
    known_.emplace_back(prefix, uri);
    return uri;
}

} // namespace Corvid::XMLBuilder
