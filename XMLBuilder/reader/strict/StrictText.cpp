#include "XMLBuilder/reader/strict/StrictText.h"

#include "host/base/Text.h"

namespace Corvid::XMLBuilder {

std::u16string contentOf(const DocumentNode& node) {
    if (node.kind == DocumentNode::Kind::attribute) {
        return node.value;
    }
    std::u16string text;
    for (const auto* child = node.firstChild; child != nullptr; child = child->next) {
        if (child->kind == DocumentNode::Kind::text) {
            text += child->value;
        }
    }
    return text;
}

std::string narrow(std::u16string_view text) {
    return Platform::toUtf8(Utf16Text(text.begin(), text.end()));
}

std::u16string_view trimmed(std::u16string_view text) noexcept {
    while (!text.empty() && isXmlSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isXmlSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace Corvid::XMLBuilder
