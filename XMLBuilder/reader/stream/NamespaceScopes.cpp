#include "XMLBuilder/reader/stream/NamespaceScopes.h"

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/nodes/NodeText.h"

namespace Corvid::XMLBuilder {

namespace {

constexpr std::string_view declaration = "xmlns";
constexpr std::string_view xmlUri = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view xmlnsUri = "http://www.w3.org/2000/xmlns/";

constexpr std::size_t longestUri = 1024; // as in a dictionary: it is compared again and again

/// Whether a name may begin with what the text begins with; it is part of a name, in UTF-8.
/// See NameStartChar and NameChar of XML 1.0.
bool beginsName(std::string_view text) noexcept {
    if (text.empty()) {
        return false;
    }
    const auto at = [&](std::size_t k) {
        return k < text.size() ? static_cast<unsigned char>(text[k]) : 0U;
    };
    if (at(0) < 0x80) {
        return at(0) != '-' && at(0) != '.' && at(0) != ':' && (at(0) < '0' || at(0) > '9');
    }
    const unsigned int two = at(0) << 8 | at(1);
    const unsigned int three = two << 8 | at(2);
    const bool isMiddleDot = two == 0xC2B7;
    const bool isCombining = two >= 0xCC80 && two <= 0xCDAF;
    const bool isTie = three == 0xE280BF || three == 0xE28180;
    return !isMiddleDot && !isCombining && !isTie;
}

} // namespace

std::string_view KeptTexts::keep(std::string_view text) {
    auto* const copy = static_cast<char*>(memory_.allocate(text.size() + 1, 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}

bool isQualifiedName(std::string_view name) noexcept {
    const auto colon = name.find(':');
    return colon == std::string_view::npos || (colon != 0 && beginsName(name.substr(colon + 1)) &&
                                               name.find(':', colon + 1) == std::string_view::npos);
}

NamespaceScopes::NamespaceScopes() {
    bindings_[""] = u"";
    bindings_["xml"] = kept(xmlUri);
}

bool NamespaceScopes::isDeclaration(std::string_view attribute) noexcept {
    return attribute.substr(0, declaration.size()) == declaration &&
           (attribute.size() == declaration.size() || attribute[declaration.size()] == ':');
}

const char16_t* NamespaceScopes::kept(std::string_view uri) {
    auto known = uris_.find(uri);
    if (known == uris_.end()) {
        known = uris_.emplace(keys_.keep(uri), Names::sharedUri(addUtf8(texts_, uri).data())).first;
    }
    return known->second;
}

std::string NamespaceScopes::declare(std::string_view attribute, std::string_view uri) {
    const bool hasPrefix = attribute.size() > declaration.size();
    const std::string_view prefix = attribute.substr(declaration.size() + (hasPrefix ? 1 : 0));
    const auto name = [&] { return "'" + std::string(attribute) + "'"; };
    if (uri.size() > longestUri) {
        return "namespace URI of " + std::to_string(uri.size()) + " bytes, expected at most " +
               std::to_string(longestUri);
    }
    if (!isQualifiedName(attribute)) {
        return name() + " declares no prefix, expected a name without colon after 'xmlns:'";
    }
    if (prefix == declaration || (prefix == "xml") != (uri == xmlUri) || uri == xmlnsUri) {
        return name() + " declares '" + std::string(uri) +
               "', expected the prefixes xml and xmlns and their namespaces to be left alone";
    }
    if (hasPrefix && uri.empty()) {
        return name() + " is empty, expected a namespace";
    }
    auto known = bindings_.find(prefix);
    if (known == bindings_.end()) {
        known = bindings_.emplace(keys_.keep(prefix), nullptr).first;
    }
    if (levels_.empty() || levels_.back().depth != depth_) {
        levels_.push_back({depth_, ++lastScope_, changes_.size()});
    }
    changes_.push_back({&known->second, known->second});
    known->second = kept(uri);
    return {};
}

void NamespaceScopes::close() noexcept {
    if (!levels_.empty() && levels_.back().depth == depth_) {
        for (; changes_.size() != levels_.back().firstChange; changes_.pop_back()) {
            *changes_.back().binding = changes_.back().before;
        }
        levels_.pop_back();
    }
    --depth_;
}

const char16_t* NamespaceScopes::find(std::string_view prefix) const {
    const auto known = bindings_.find(prefix);
    return known == bindings_.end() ? nullptr : known->second;
}

} // namespace Corvid::XMLBuilder
