#pragma once

#include "XMLBuilder/format/EmptyParts.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/nodes/DocumentNode.h"
#include "host/types/DataType.h"

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace Corvid::XMLBuilder {

class Content;
class Reading;

/// A value that was read; null where there is none.
using ParsedValue = Templates::auto_ptr<Types::SimpleDataType>;

template <class T> ParsedValue give(T&& value) {
    return ParsedValue(new std::decay_t<T>(std::forward<T>(value)));
}

/// What a value is read from.
class ValueInput {
public:
    /// Both are borrowed.
    /// @param node  an element with a child, or an attribute.
    ValueInput(Reading& reading, const DocumentNode& node, EmptyParts empty) noexcept
        : reading_(reading), node_(node), empty_(empty) {}

    const DocumentNode& node() const noexcept { return node_; }
    EmptyParts empty() const noexcept { return empty_; }
    bool isStrict() const noexcept;

    /// Whether nothing but the element says what the value is: then some types are not read.
    bool isElementAlone() const noexcept { return empty_ == EmptyParts::missing && !isStrict(); }

    /// The attribute's value or the text of the element's first child; strictly, all text in it,
    /// without white space at its ends. Zero-terminated, until the next call.
    const char16_t* text();
    /// The same for a type whose values may begin and end with white space.
    const char16_t* wholeText();

    /// The namespace of the parts of values.
    /// @throws  what an XPath query throws where the root does not declare their prefix.
    const char16_t* uriOf(const Names::Namespace& parts) const;

private:
    const char16_t* terminated(const Content& content, std::u16string_view text);

    Reading& reading_;
    const DocumentNode& node_;
    EmptyParts empty_;
    std::u16string text_; ///< where it is not that of one node
};

} // namespace Corvid::XMLBuilder
