#include "XMLBuilder/reader/nodes/PrefixScope.h"

namespace Corvid::XMLBuilder {

namespace {

constexpr std::u16string_view declaration = u"xmlns";

/// Calls visit with each namespace declaration of an element, until it says true.
template <class Visit> bool anyDeclaration(const DocumentNode& element, Visit visit) {
    for (const auto* attribute = element.firstAttribute; attribute != nullptr;
         attribute = attribute->next) {
        const std::u16string_view name = attribute->name;
        if (name.substr(0, declaration.size()) == declaration && visit(name, *attribute)) {
            return true;
        }
    }
    return false;
}

} // namespace

template <class Visit> bool PrefixScope::climb(Visit visit) const {
    const DocumentNode* const end = around_ == nullptr ? nullptr : &around_->element_;
    for (const auto* element = &element_; element != end && element != nullptr;
         element = element->parent) {
        if (visit(*element)) {
            return true;
        }
    }
    return false;
}

PrefixScope::PrefixScope(const DocumentNode& root)
    : element_(root), around_(nullptr), declares_(this) {}

PrefixScope::PrefixScope(const DocumentNode& element, PrefixScope& around)
    : element_(element), around_(&around), declares_(around.declares_) {
    const auto any = [](std::u16string_view, const DocumentNode&) { return true; };
    if (climb([&](const DocumentNode& each) { return anyDeclaration(each, any); })) {
        declares_ = this;
    }
}

const char16_t* PrefixScope::uriOf(const char16_t* prefix) {
    if (declares_ != this) {
        return declares_->uriOf(prefix);
    }
    for (const auto& [knownPrefix, uri] : known_) {
        if (knownPrefix == prefix) {
            return uri;
        }
    }
    const char16_t* uri = nullptr;
    const auto declaresIt = [&](std::u16string_view name, const DocumentNode& attribute) {
        const bool found = name.size() > declaration.size() && name[declaration.size()] == u':' &&
                           name.substr(declaration.size() + 1) == prefix;
        if (found) {
            uri = attribute.value.data();
        }
        return found;
    };
    if (!climb([&](const DocumentNode& each) { return anyDeclaration(each, declaresIt); }) &&
        around_ != nullptr) {
        uri = around_->uriOf(prefix);
    }
    known_.emplace_back(prefix, uri);
    return uri;
}

} // namespace Corvid::XMLBuilder
