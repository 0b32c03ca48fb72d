#include "XMLBuilder/reader/values/ValueInput.h"

#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/nodes/NodeText.h"

#include <vector>

namespace Corvid::XMLBuilder {

namespace {

/// The text of all nodes below an element but comments and instructions. Elements may nest
/// as deep as a document allows, so nothing here works by calls that nest with them.
std::u16string textBelow(const DocumentNode& element) {
    std::u16string text;
    std::vector<const DocumentNode*> next{element.firstChild}; // on each level
    while (!next.empty()) {
        const DocumentNode* const node = next.back();
        if (node == nullptr) {
            next.pop_back();
            continue;
        }
        next.back() = node->next;
        if (node->kind == DocumentNode::Kind::text) {
            text += node->value;
        } else if (node->kind == DocumentNode::Kind::element) {
            next.push_back(node->firstChild);
        }
    }
    return text;
}

} // namespace

bool ValueInput::isStrict() const noexcept { return reading_.strictness() != nullptr; }

const char16_t* ValueInput::text() {
    if (!isStrict()) {
        return wholeText();
    }
    const Content content(node_);
    return terminated(content, trimmed(content.text()));
}

/// @param text  of the content, or a part of it.
const char16_t* ValueInput::terminated(const Content& content, std::u16string_view text) {
    if (content.isOfOneNode() && *(text.data() + text.size()) == 0) {
        return text.data();
    }
    text_ = text;
    return text_.c_str();
}

const char16_t* ValueInput::wholeText() {
    if (isStrict()) {
        const Content content(node_);
        return terminated(content, content.text());
    }
    const bool isAttribute = node_.kind == DocumentNode::Kind::attribute;
    const DocumentNode& from = isAttribute ? node_ : *node_.firstChild;
    if (from.kind == DocumentNode::Kind::element) {
        text_ = textBelow(from);
        return text_.c_str();
    }
    return from.value.data();
}

const char16_t* ValueInput::uriOf(const Names::Namespace& parts) const {
    return reading_.uriOfParts(parts);
}

} // namespace Corvid::XMLBuilder
