#include "host/xmlutils/Serialise.h"

#include "host/base/Exceptions.h"
#include "host/dataio/DataSink.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/MarkupWriter.h"
#include "host/xmlutils/TextEncoder.h"
#include "host/xmlutils/XmlText.h"

#include <cstring>
#include <string>
#include <vector>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLString.hpp>

namespace Corvid::XMLUtils {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
using View = MarkupWriter::View;

View viewOf(const XMLCh* text) { return text == nullptr ? View(u"") : View(text); }

MarkupWriter::Name nameOf(const DOMNode& node) {
    const View uri = viewOf(node.getNamespaceURI());
    return {node.getNodeName(), uri.empty() ? View(u"") : viewOf(node.getPrefix()), uri};
}

/// Whether a processing instruction may have a target: a name without colon, and not that of the
/// XML declaration.
bool isTarget(View name) {
    return xercesc::XMLChar1_0::isValidNCName(name.data(), name.size()) &&
           xercesc::XMLString::compareIStringASCII(name.data(), u"xml") != 0;
}

/// Walks a tree without recursion and writes it.
class Serialiser {
public:
    Serialiser(Layout layout, InvalidCharacters& invalid, TextEncoder& out)
        : markup_(layout, invalid, out) {}

    void write(const DOMNode& top, EncodingType encoding, std::string_view inFront = "");

private:
    bool enter(const DOMNode& node);
    void leave(const DOMNode& node);
    bool enterElement(const DOMElement& element);
    void writeProcessingInstruction(const DOMNode& node);

    MarkupWriter markup_;
    std::vector<MarkupWriter::Attribute> attributes_; ///< of one element
};

void Serialiser::write(const DOMNode& top, EncodingType encoding, std::string_view inFront) {
    markup_.startDocument(encoding, inFront);
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
    markup_.endDocument();
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
        markup_.text(viewOf(node.getNodeValue()));
        return false;
    case DOMNode::COMMENT_NODE:
        markup_.comment(viewOf(node.getNodeValue()));
        return false;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        writeProcessingInstruction(node);
        return false;
    case DOMNode::DOCUMENT_TYPE_NODE:
        markup_.refuse("document type found, expected none", __LINE__);
    default:
        markup_.refuse("node of type " + std::to_string(node.getNodeType()) +
                           " found, expected elements, text, comments and processing instructions",
                       __LINE__);
    }
}

void Serialiser::leave(const DOMNode& node) {
    if (node.getNodeType() == DOMNode::ELEMENT_NODE) {
        markup_.endElement();
    }
}

void Serialiser::writeProcessingInstruction(const DOMNode& node) {
    const View target = node.getNodeName();
    if (!isTarget(target)) {
        markup_.refuse("processing instruction with the target \"" +
                           Platform::toUtf8(fromXml(target.data())) +
                           "\" found, expected a name without colon other than xml",
                       __LINE__);
    }
    markup_.processingInstruction(target, viewOf(node.getNodeValue()));
}

bool Serialiser::enterElement(const DOMElement& element) {
    const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
    attributes_.clear();
    for (XMLSize_t i = 0, count = attributes.getLength(); i != count; ++i) {
        const DOMNode& attribute = *attributes.item(i);
        attributes_.push_back({nameOf(attribute), viewOf(attribute.getLocalName()),
                               viewOf(attribute.getNodeValue())});
    }
    markup_.startElement(nameOf(element), attributes_.data(), attributes_.size());
    const DOMNode* child = element.getFirstChild();
    if (child == nullptr) {
        markup_.endElement();
        return false;
    }
    // White space beside text of the element, or anywhere inside, would become part of the text.
    bool onOneLine = false;
    for (; child != nullptr && !onOneLine; child = child->getNextSibling()) {
        onOneLine = child->getNodeType() == DOMNode::TEXT_NODE ||
                    child->getNodeType() == DOMNode::CDATA_SECTION_NODE;
    }
    markup_.startContent(onOneLine);
    return true;
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
    static_cast<void>(nameOf(encoding)); // throws where it has none
    const DOMNode& top = checkedTop(node);
    TextEncoder out(encoding, sink);
    out.byteOrderMark();
    Serialiser(layout, invalid, out).write(top, encoding, inFront);
}

void domToBuffer(const DOMNode* node, Utf16Text& out, EncodingType encoding) {
    domToBuffer(node, out, encoding, Layout::indented);
}

void domToBuffer(const DOMNode* node, Utf16Text& out, EncodingType encoding, Layout layout) {
    static_cast<void>(nameOf(encoding)); // throws where it has none
    const DOMNode& top = checkedTop(node);
    Utf16Text result;
    TextSink sink(result);
    // The machine's byte order, without mark: the text is no byte sequence yet.
    TextEncoder encoder(EncodingType::utf16, sink);
    RefuseInvalidCharacters invalid;
    Serialiser(layout, invalid, encoder).write(top, encoding);
    out = std::move(result);
}

} // namespace Corvid::XMLUtils
