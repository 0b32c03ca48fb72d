#pragma once

#include "host/xmlutils/ElementPath.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/Layout.h"
#include "host/xmlutils/NamespaceScope.h"

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid::XMLUtils {

class InvalidCharacters;
class TextEncoder;

/// Writes the markup of a document from its start to its end: names, the namespaces that have to be
/// declared, layout, escaped text. Who calls it knows what the document holds.
///
/// All texts are zero-terminated and borrowed; those of an element until it is ended.
class MarkupWriter {
public:
    using View = NamespaceScope::View;

    struct Name {
        View qualified;
        View prefix; ///< empty where `uri` is
        View uri;
    };
    struct Attribute {
        Name name;
        View local;
        View value;
    };

    /// Everything is borrowed.
    MarkupWriter(Layout layout, InvalidCharacters& invalid, TextEncoder& out)
        : invalid_(invalid), out_(out), documentOnOneLine_(layout == Layout::compact) {}

    /// Writes the XML declaration.
    /// @param inFront  goes between it and the rest, unchanged; ASCII.
    void startDocument(EncodingType encoding, std::string_view inFront);
    /// Ends the last line and flushes the encoder.
    void endDocument();

    /// Starts an element. Its content follows after startContent(), or endElement() at once.
    /// Namespaces that it uses and nothing declares are declared.
    /// @param attributes  namespace declarations among them.
    /// @throws InvalidFormat  a name has a prefix without a namespace, or a declaration none.
    void startElement(const Name& name, const Attribute* attributes, std::size_t count);
    /// @param onOneLine  whether white space would become part of the content.
    void startContent(bool onOneLine);
    void endElement();

    void text(View value);
    void comment(View value);
    void processingInstruction(View target, View data);

    /// Refuses what is in the element that is open.
    /// @throws InvalidFormat  always.
    [[noreturn]] void refuse(const std::string& what, int line) const;

private:
    void checkPrefix(const Name& name) const;
    void readDeclarations(const Attribute* attributes, std::size_t count);
    void writeDeclarations(const Attribute* attributes, std::size_t count);
    void writeAttribute(const Attribute& attribute);
    void declare(View prefix, View uri);
    void writeDeclaration(View prefix, View uri);
    void newLine();
    void units(View text);
    void escaped(View value, unsigned char place, View attributeName = {});
    void reference(char16_t unit, std::size_t position, View attributeName);
    bool isOnOneLine() const { return open_.empty() ? documentOnOneLine_ : onOneLine_.back(); }

    InvalidCharacters& invalid_;
    TextEncoder& out_;
    bool documentOnOneLine_;
    bool hasContent_ = true;      ///< the start tag written last is complete
    std::vector<PathStep> open_;  ///< apart, for messages name them all
    std::vector<bool> onOneLine_; ///< of each open element
    NamespaceScope scope_;
    std::list<std::u16string> madePrefixes_;
};

} // namespace Corvid::XMLUtils
