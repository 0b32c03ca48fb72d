#include "host/xmlutils/Serialise.h"

#include "host/base/Exceptions.h"
#include "host/dataio/DataSink.h"
#include "host/xmlutils/ElementPath.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/NamespaceScope.h"
#include "host/xmlutils/TextEncoder.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <list>
#include <string>
#include <vector>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLUtils {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
using View = NamespaceScope::View;

constexpr unsigned char inText = 1;
constexpr unsigned char inAttribute = 2;
constexpr unsigned char inMarkup = 4;

/// Which characters can't stand as they are, by place.
constexpr std::array<unsigned char, 0x80> makeSpecial() {
    std::array<unsigned char, 0x80> special{};
    for (std::size_t unit = 0; unit != 0x20; ++unit) {
        special[unit] = inText | inAttribute | inMarkup;
    }
    special['\t'] = inAttribute;
    special['\n'] = inAttribute;
    // A parser turns a bare CR into LF.
    special['\r'] = inText | inAttribute;
    special['&'] = inText | inAttribute;
    special['<'] = inText | inAttribute;
    special['>'] = inText | inAttribute;
    special['"'] = inAttribute;
    return special;
}
constexpr std::array<unsigned char, 0x80> special = makeSpecial();

/// Deeper levels are indented no further: the blanks of a deep document would grow quadratically.
constexpr std::size_t deepestIndent = 40;
constexpr std::size_t blanksPerLevel = 2;

View viewOf(const XMLCh* text) { return text == nullptr ? View() : View(text); }

bool isSurrogatePair(const XMLCh* at) {
    return at[0] < 0xDC00 && at[1] >= 0xDC00 && at[1] <= 0xDFFF;
}

/// Walks a tree without recursion and writes it.
class Serialiser {
public:
    Serialiser(Layout layout, InvalidCharacters& invalid, TextEncoder& out)
        : invalid_(invalid), out_(out), documentOnOneLine_(layout == Layout::compact) {}

    void write(const DOMNode& top, const char* encodingName, std::string_view inFront = "");

private:
    bool enter(const DOMNode& node);
    void leave(const DOMNode& node);
    bool enterElement(const DOMElement& element);
    void writeStartTag(const DOMElement& element);
    void readDeclarations(const xercesc::DOMNamedNodeMap& attributes);
    void writeDeclarations(const xercesc::DOMNamedNodeMap& attributes);
    void writeAttribute(const xercesc::DOMAttr& attribute);
    void declare(View prefix, View uri);
    void writeDeclaration(View prefix, View uri);
    View checkedPrefix(const DOMNode& node);
    void writeComment(const XMLCh* text);
    void writeProcessingInstruction(const DOMNode& node);
    void newLine();
    void text(View name) { out_.units(name.data(), name.size()); }
    void escaped(const XMLCh* value, unsigned char place, const XMLCh* attributeName = nullptr);
    void reference(XMLCh unit, std::size_t position, const XMLCh* attributeName);
    [[noreturn]] void refuse(const std::string& what, int line);

    bool isOnOneLine() const { return onOneLine_.empty() ? documentOnOneLine_ : onOneLine_.back(); }

    InvalidCharacters& invalid_;
    TextEncoder& out_;
    bool documentOnOneLine_;
    // One entry per open element.
    std::vector<const DOMElement*> open_;
    std::vector<bool> onOneLine_;
    NamespaceScope scope_;
    std::list<std::basic_string<XMLCh>> madePrefixes_;
};

void Serialiser::write(const DOMNode& top, const char* encodingName, std::string_view inFront) {
    out_.ascii("<?xml version=\"1.0\" encoding=\"");
    out_.ascii(encodingName);
    out_.ascii("\"?>");
    out_.ascii(inFront);
    const DOMNode* node = &top;
    for (;;) {
        if (enter(*node)) {
            node = node->getFirstChild();
            continue;
        }
        const DOMNode* next = nullptr;
        while (node != &top && (next = node->getNextSibling()) == nullptr) {
            node = node->getParentNode();
            leave(*node);
        }
        if (node == &top) {
            break;
        }
        node = next;
    }
    newLine();
    out_.flush();
}

/// Writes a node, of an element with children only the start.
/// @return whether the children are to follow.
bool Serialiser::enter(const DOMNode& node) {
    switch (node.getNodeType()) {
    case DOMNode::DOCUMENT_NODE:
        return true;
    case DOMNode::ELEMENT_NODE:
        return enterElement(static_cast<const DOMElement&>(node));
    case DOMNode::TEXT_NODE:
    case DOMNode::CDATA_SECTION_NODE:
        escaped(node.getNodeValue(), inText);
        return false;
    case DOMNode::COMMENT_NODE:
        writeComment(node.getNodeValue());
        return false;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        writeProcessingInstruction(node);
        return false;
    case DOMNode::DOCUMENT_TYPE_NODE:
        refuse("document type found, expected none", __LINE__);
    default:
        refuse("node of type " + std::to_string(node.getNodeType()) +
                   " found, expected elements, text, comments and processing instructions",
               __LINE__);
    }
}

void Serialiser::leave(const DOMNode& node) {
    if (node.getNodeType() != DOMNode::ELEMENT_NODE) {
        return;
    }
    const bool onOneLine = onOneLine_.back();
    onOneLine_.pop_back();
    open_.pop_back();
    scope_.leave();
    if (!onOneLine) {
        newLine();
    }
    out_.ascii("</");
    text(node.getNodeName());
    out_.ascii(">");
}

bool Serialiser::enterElement(const DOMElement& element) {
    newLine();
    const bool aroundOnOneLine = isOnOneLine();
    open_.push_back(&element);
    onOneLine_.push_back(aroundOnOneLine);
    scope_.enter();
    writeStartTag(element);
    const DOMNode* child = element.getFirstChild();
    if (child == nullptr) {
        out_.ascii("/>");
        open_.pop_back();
        onOneLine_.pop_back();
        scope_.leave();
        return false;
    }
    out_.ascii(">");
    // White space beside text of the element, or anywhere inside, would become part of the text.
    for (bool onOneLine = aroundOnOneLine; child != nullptr && !onOneLine;
         child = child->getNextSibling()) {
        onOneLine = child->getNodeType() == DOMNode::TEXT_NODE ||
                    child->getNodeType() == DOMNode::CDATA_SECTION_NODE;
        onOneLine_.back() = onOneLine;
    }
    return true;
}

void Serialiser::writeStartTag(const DOMElement& element) {
    out_.ascii("<");
    text(element.getNodeName());
    const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
    const XMLSize_t count = attributes.getLength();
    if (count != 0) {
        readDeclarations(attributes);
    }
    const View prefix = checkedPrefix(element);
    const View uri = viewOf(element.getNamespaceURI());
    if (uri != xercesc::XMLUni::fgXMLURIName && scope_.uriOf(prefix) != uri) {
        declare(prefix, uri);
    }
    if (count == 0) {
        return;
    }
    writeDeclarations(attributes);
    for (XMLSize_t i = 0; i != count; ++i) {
        writeAttribute(static_cast<const xercesc::DOMAttr&>(*attributes.item(i)));
    }
}

/// The prefix that an attribute declares, by pointer to its text; null when it is no declaration.
const XMLCh* declaredPrefix(const DOMNode& attribute) {
    const XMLCh* const name = attribute.getNodeName();
    if (View(name).substr(0, 5) != u"xmlns" || (name[5] != 0 && name[5] != u':')) {
        return nullptr;
    }
    return name[5] == 0 ? name + 5 : name + 6;
}

void Serialiser::readDeclarations(const xercesc::DOMNamedNodeMap& attributes) {
    for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
        const DOMNode& attribute = *attributes.item(i);
        const XMLCh* const prefix = declaredPrefix(attribute);
        if (prefix == nullptr) {
            continue;
        }
        const View uri = viewOf(attribute.getNodeValue());
        if ((*prefix != 0 && uri.empty()) || View(prefix) == u"xmlns") {
            refuse("attribute " + Platform::toUtf8(fromXml(attribute.getNodeName())) +
                       " declares no namespace",
                   __LINE__);
        }
        scope_.declare(prefix, uri);
    }
}

void Serialiser::writeDeclarations(const xercesc::DOMNamedNodeMap& attributes) {
    for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
        const DOMNode& attribute = *attributes.item(i);
        const XMLCh* const prefix = declaredPrefix(attribute);
        // The name of the element itself may have taken the prefix for another namespace.
        if (prefix != nullptr && scope_.uriOf(prefix) == viewOf(attribute.getNodeValue())) {
            writeDeclaration(prefix, scope_.uriOf(prefix));
        }
    }
}

void Serialiser::writeAttribute(const xercesc::DOMAttr& attribute) {
    if (declaredPrefix(attribute) != nullptr) {
        return;
    }
    const XMLCh* const name = attribute.getNodeName();
    const View prefix = checkedPrefix(attribute);
    const View uri = viewOf(attribute.getNamespaceURI());
    View written = prefix;
    if (!uri.empty() && uri != xercesc::XMLUni::fgXMLURIName &&
        (prefix.empty() || scope_.uriOf(prefix) != uri)) {
        if (prefix.empty() || !scope_.uriOf(prefix).empty()) {
            written = madePrefixes_.emplace_back(scope_.unusedPrefix());
        }
        declare(written, uri);
    }
    out_.ascii(" ");
    if (written.empty()) {
        text(name);
    } else {
        text(written);
        out_.ascii(":");
        text(attribute.getLocalName());
    }
    out_.ascii("=\"");
    escaped(attribute.getNodeValue(), inAttribute, name);
    out_.ascii("\"");
}

void Serialiser::declare(View prefix, View uri) {
    scope_.declare(prefix, uri);
    writeDeclaration(prefix, uri);
}

void Serialiser::writeDeclaration(View prefix, View uri) {
    out_.ascii(prefix.empty() ? " xmlns" : " xmlns:");
    text(prefix);
    out_.ascii("=\"");
    escaped(uri.data() == nullptr ? u"" : uri.data(), inAttribute, u"xmlns");
    out_.ascii("\"");
}

/// The prefix of an element or attribute; a prefix without a namespace can't be written.
View Serialiser::checkedPrefix(const DOMNode& node) {
    const View uri = viewOf(node.getNamespaceURI());
    if (!uri.empty()) {
        return viewOf(node.getPrefix());
    }
    if (View(node.getNodeName()).find(u':') != View::npos) {
        refuse("prefix of the name " + Platform::toUtf8(fromXml(node.getNodeName())) +
                   " has no namespace",
               __LINE__);
    }
    return {};
}

void Serialiser::writeComment(const XMLCh* comment) {
    const View content(comment);
    if (content.find(u"--") != View::npos || (!content.empty() && content.back() == u'-')) {
        refuse("comment with two hyphens or a hyphen at its end found", __LINE__);
    }
    newLine();
    out_.ascii("<!--");
    escaped(comment, inMarkup);
    out_.ascii("-->");
}

/// Whether a processing instruction may have a target: a name without colon, and not that of the
/// XML declaration.
bool isTarget(View name) {
    return xercesc::XMLChar1_0::isValidNCName(name.data(), name.size()) &&
           xercesc::XMLString::compareIStringASCII(name.data(), u"xml") != 0;
}

void Serialiser::writeProcessingInstruction(const DOMNode& node) {
    const View target = viewOf(node.getNodeName());
    if (!isTarget(target)) {
        refuse("processing instruction with the target \"" +
                   Platform::toUtf8(fromXml(target.data())) +
                   "\" found, expected a name without colon other than xml",
               __LINE__);
    }
    const XMLCh* const data = node.getNodeValue();
    if (viewOf(data).find(u"?>") != View::npos) {
        refuse("processing instruction with its end mark inside found", __LINE__);
    }
    newLine();
    out_.ascii("<?");
    text(target);
    if (!viewOf(data).empty()) {
        out_.ascii(" ");
        escaped(data, inMarkup);
    }
    out_.ascii("?>");
}

/// Ends the line and indents the next one, where white space may stand.
void Serialiser::newLine() {
    static constexpr char blanks[] = "\n                                        "
                                     "                                        ";
    static_assert(sizeof blanks == 2 + deepestIndent * blanksPerLevel);
    if (!isOnOneLine()) {
        const std::size_t level = std::min(open_.size(), deepestIndent);
        out_.ascii(std::string_view(blanks, 1 + level * blanksPerLevel));
    }
}

void Serialiser::escaped(const XMLCh* value, unsigned char place, const XMLCh* attributeName) {
    const XMLCh* run = value;
    const XMLCh* at = value;
    for (;;) {
        const XMLCh unit = *at;
        if (unit < 0x80 ? unit != 0 && (special[unit] & place) == 0
                        : unit < 0xD800 || (unit > 0xDFFF && unit < 0xFFFE)) {
            ++at;
        } else if (unit >= 0xD800 && unit < 0xFFFE && isSurrogatePair(at)) {
            at += 2;
        } else {
            out_.units(run, static_cast<std::size_t>(at - run));
            if (unit == 0) {
                return;
            }
            reference(unit, static_cast<std::size_t>(at - value), attributeName);
            run = ++at;
        }
    }
}

void Serialiser::reference(XMLCh unit, std::size_t position, const XMLCh* attributeName) {
    switch (unit) {
    case u'&':
        return out_.ascii("&amp;");
    case u'<':
        return out_.ascii("&lt;");
    case u'>':
        return out_.ascii("&gt;");
    case u'"':
        return out_.ascii("&quot;");
    case u'\t':
        return out_.ascii("&#x9;");
    case u'\n':
        return out_.ascii("&#xA;");
    case u'\r':
        return out_.ascii("&#xD;");
    default:
        invalid_.found({elementPath(open_, attributeName), unit, position});
        const XMLCh replacement = 0xFFFD;
        out_.units(&replacement, 1);
    }
}

void Serialiser::refuse(const std::string& what, int line) {
    const std::string path = Platform::toUtf8(elementPath(open_, nullptr));
    throw Exceptions::InvalidFormat((path.empty() ? "document" : path) + ": " + what, __FILE__,
                                    line);
}

/// Collects the bytes of UTF-16 text in the machine's byte order.
class TextSink final : public DataIO::DataSink {
public:
    explicit TextSink(Utf16Text& text) : text_(text) {}

    void write(const unsigned char* bytes, std::size_t count) override {
        const std::size_t old = text_.size();
        text_.resize(old + count / sizeof(Utf16Unit));
        std::memcpy(text_.data() + old, bytes, count);
    }

private:
    Utf16Text& text_;
};

const DOMNode& checkedTop(const DOMNode* node) {
    if (node == nullptr) {
        throw Exceptions::InvalidArgument("serialise: no node, expected a document or an element",
                                          CORVID_HERE);
    }
    const auto type = node->getNodeType();
    if (type != DOMNode::DOCUMENT_NODE && type != DOMNode::ELEMENT_NODE) {
        throw Exceptions::InvalidArgument("serialise: node of type " + std::to_string(type) +
                                              ", expected a document or an element",
                                          CORVID_HERE);
    }
    if (type == DOMNode::DOCUMENT_NODE &&
        static_cast<const xercesc::DOMDocument*>(node)->getDocumentElement() == nullptr) {
        throw Exceptions::InvalidFormat("document: no root element, expected one", CORVID_HERE);
    }
    return *node;
}

} // namespace

void serialise(const DOMNode* node, EncodingType encoding, Layout layout,
               InvalidCharacters& invalid, DataIO::DataSink& sink, std::string_view inFront) {
    const char* const encodingName = nameOf(encoding);
    const DOMNode& top = checkedTop(node);
    TextEncoder out(encoding, sink);
    if (encoding == EncodingType::utf16) {
        const XMLCh byteOrderMark = 0xFEFF;
        out.units(&byteOrderMark, 1);
    }
    Serialiser(layout, invalid, out).write(top, encodingName, inFront);
}

void domToBuffer(const DOMNode* node, Utf16Text& out, EncodingType encoding) {
    domToBuffer(node, out, encoding, Layout::indented);
}

void domToBuffer(const DOMNode* node, Utf16Text& out, EncodingType encoding, Layout layout) {
    const char* const encodingName = nameOf(encoding);
    const DOMNode& top = checkedTop(node);
    Utf16Text result;
    TextSink sink(result);
    // The machine's byte order, without mark: the text is no byte sequence yet.
    TextEncoder encoder(EncodingType::utf16, sink);
    RefuseInvalidCharacters invalid;
    Serialiser(layout, invalid, encoder).write(top, encodingName);
    out = std::move(result);
}

} // namespace Corvid::XMLUtils
