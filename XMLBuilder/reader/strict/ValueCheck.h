#pragma once

#include "XMLBuilder/format/EmptyParts.h"
#include "XMLBuilder/format/IntegerRange.h"
#include "XMLBuilder/reader/nodes/DocumentNode.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/strict/Mistakes.h"

#include <cstddef>
#include <string>
#include <type_traits>

namespace Corvid::XMLBuilder {

/// A value that is looked at before it is read, and what its form checks it with. Every check adds
/// a mistake for what is wrong and then returns false.
class ValueCheck {
public:
    /// Both are borrowed.
    /// @param node  an element, or an attribute.
    ValueCheck(const DocumentNode& node, EmptyParts empty, Mistakes& mistakes) noexcept
        : node_(node), empty_(empty), mistakes_(mistakes) {}

    const DocumentNode& node() const noexcept { return node_; }
    EmptyParts empty() const noexcept { return empty_; }
    Mistakes& mistakes() noexcept { return mistakes_; }

    /// Whether there is text and no element in a node, and the text is right.
    /// @param isRight   is given the text.
    /// @param expected  what would be right: a text, or what gives one when it is needed.
    /// @param trims     whether white space around the text does not count.
    template <class IsRight, class Expected>
    bool text(const DocumentNode& node, IsRight isRight, const Expected& expected,
              bool trims = true) {
        if (!textOnly(node)) {
            return false;
        }
        const Content content(node);
        const std::u16string_view text = trims ? trimmed(content.text()) : content.text();
        if (isRight(text)) {
            return true;
        }
        if constexpr (std::is_invocable_v<Expected>) {
            return refuse(node, text, expected());
        } else {
            return refuse(node, text, expected);
        }
    }
    /// Whether there is no element in a node.
    bool textOnly(const DocumentNode& node);

    bool number(const DocumentNode& node, const IntegerRange& range);
    /// Pairs of hexadecimal digits.
    bool bytes(const DocumentNode& node, bool mayBeEmpty = true);
    /// So many bytes in dotted hexadecimal.
    /// @param orSo  another number of them that may be; 0 for none.
    bool identifier(std::size_t bytes, std::size_t orSo = 0);

    /// The one element in the value's, which must have that name; null otherwise.
    const DocumentNode* onlyChild(const char16_t* qualified, const char16_t* uri);

private:
    bool refuse(const DocumentNode& node, std::u16string_view text, const std::string& expected);

    const DocumentNode& node_;
    EmptyParts empty_;
    Mistakes& mistakes_;
};

} // namespace Corvid::XMLBuilder
