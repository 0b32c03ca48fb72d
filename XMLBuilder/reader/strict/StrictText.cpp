#include "XMLBuilder/reader/strict/StrictText.h"

#include "host/base/Text.h"

namespace Corvid::XMLBuilder {

namespace {

const DocumentNode* textFrom(const DocumentNode* node) {
    while (node != nullptr && node->kind != DocumentNode::Kind::text) {
        node = node->next;
    }
    return node;
}

} // namespace

Content::Content(const DocumentNode& node) {
    if (node.kind == DocumentNode::Kind::attribute) {
        text_ = node.value;
        return;
    }
    const DocumentNode* const first = textFrom(node.firstChild);
    if (first == nullptr) {
        return;
    }
    text_ = first->value;
    const DocumentNode* next = textFrom(first->next);
    if (next == nullptr) {
        return;
    }
    joined_ = text_;
    for (; next != nullptr; next = textFrom(next->next)) {
        joined_ += next->value;
    }
    text_ = joined_;
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
