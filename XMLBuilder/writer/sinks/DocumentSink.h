#pragma once

#include <cstddef>
#include <string_view>

namespace Corvid::XMLBuilder {

/// Receives a document in its order: elements, their attributes, their texts.
class DocumentSink {
public:
    using Text = std::u16string_view;

    /// Zero-terminated texts, borrowed until the document is complete.
    struct Name {
        const char16_t* uri;
        const char16_t* qualified; ///< with a prefix
    };
    /// The value is zero-terminated and borrowed for the call.
    struct Attribute {
        Name name;
        Text value;
    };

    virtual ~DocumentSink() = default;

    /// @param attributes  in any order; the document has them in that of their qualified names.
    ///                    Declarations of namespaces are among them.
    virtual void startElement(const Name& name, const Attribute* attributes, std::size_t count) = 0;
    void startElement(const Name& name) { startElement(name, nullptr, 0); }
    virtual void endElement() = 0;

    /// @param text  zero-terminated; may be empty: an element with an empty text is not one
    ///              without text.
    virtual void text(Text text) = 0;
};

} // namespace Corvid::XMLBuilder
