#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvid::XMLUtils {

/// Gets what start tags contain, in the order of the document.
class StartTagSink {
public:
    virtual ~StartTagSink() = default;

    // Each returns whether the scan goes on. Texts are borrowed for the call.

    /// A start tag begins. The name is as written, with its prefix.
    virtual bool startTag(std::u16string_view name) = 0;
    /// The name of an attribute or declaration of the tag, as written.
    virtual bool attribute(std::u16string_view name) = 0;
    /// The value of the declaration whose name came last, references resolved.
    virtual bool namespaceUri(std::u16string_view uri) = 0;
    virtual bool endOfTag() = 0;
};

/// Finds the start tags in the text of a document, which comes piece by piece. It agrees with a
/// parser about any text up to the parser's first error; it finds no errors itself. A document type
/// ends the scan.
class StartTagScanner {
public:
    /// @param sink  borrowed, longer than the scanner.
    explicit StartTagScanner(StartTagSink& sink) noexcept : sink_(sink) {}

    /// Scans the next piece.
    /// @return how many code units the scan went on for: all, unless the sink ended it.
    std::size_t scan(std::u16string_view piece);

private:
    enum class State : unsigned char {
        content,      ///< between markup
        opened,       ///< after `<`
        declaration,  ///< after `<!`
        commentBegin, ///< after `<!-`
        skipped,      ///< in what ends with `end_` and `>`: comment, CDATA section, instruction
        endTag,
        elementName,
        tag, ///< after a name or value
        attributeName,
        beforeValue,
        value,
        ended ///< nothing is looked at any more
    };

    // Each takes code units from the front of the text and returns how many.
    std::size_t step(std::u16string_view rest);
    std::size_t open(char16_t unit);
    std::size_t skip(std::u16string_view rest);
    std::size_t name(std::u16string_view rest);
    std::size_t inTag(char16_t unit);
    std::size_t value(std::u16string_view rest);

    void skipTo(char16_t end, std::size_t ends);

    StartTagSink& sink_;
    State state_ = State::content;
    bool refused_ = false;
    char16_t end_ = 0;     ///< what comes in front of the `>` that ends a skipped part
    std::size_t ends_ = 0; ///< how many of it
    std::size_t endsSeen_ = 0;
    char16_t quote_ = 0;    ///< around the value
    bool declares_ = false; ///< whether the attribute declares a namespace
    std::u16string text_;   ///< of the name, or of a declaration's value, so far
};

} // namespace Corvid::XMLUtils
