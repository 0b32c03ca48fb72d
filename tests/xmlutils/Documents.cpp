#include "tests/xmlutils/Documents.h"

#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/XmlText.h"

#include <fstream>
#include <map>
#include <unistd.h>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace Corvid::XMLUtils::Testing {

using namespace xercesc;

Parser makeParser() {
    DOMImplementation* const implementation = Initializer::instance().domImplementation();
    return Parser(dynamic_cast<DOMImplementationLS&>(*implementation)
                      .createLSParser(DOMImplementationLS::MODE_SYNCHRONOUS, nullptr,
                                      XMLPlatformUtils::fgMemoryManager, nullptr));
}

Document makeDocument() {
    Initializer::instance();
    return Document(DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument());
}

Document makeRootedDocument() {
    Document document = makeDocument();
    DOMElement* const root = document->createElementNS(u"urn:p", u"p:Root");
    root->setAttributeNS(XMLUni::fgXMLNSURIName, u"xmlns:p", u"urn:p");
    document->appendChild(root);
    return document;
}

DOMElement* addElement(DOMElement& parent, const XMLCh* name, const XMLCh* text) {
    DOMDocument* const document = parent.getOwnerDocument();
    DOMElement* const element = document->createElementNS(u"urn:p", name);
    parent.appendChild(element);
    if (*text != 0) {
        element->appendChild(document->createTextNode(text));
    }
    return element;
}

std::string written(const DOMNode& node, EncodingType encoding, Layout layout) {
    DataIO::Memory::MemoryDataSink sink;
    RefuseInvalidCharacters invalid;
    serialise(&node, encoding, layout, invalid, sink);
    return std::string(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize());
}

DOMDocument* load(std::string_view bytes, DOMLSParser& parser) {
    return loadDocumentFromBuffer(reinterpret_cast<const unsigned char*>(bytes.data()),
                                  bytes.size(), parser);
}

std::string loadingError(std::string_view bytes) {
    const Parser parser = makeParser();
    try {
        load(bytes, *parser);
    } catch (const SAXParseException& error) {
        return utf8(error.getMessage());
    }
    return {};
}

namespace {

std::string expandedName(const DOMNode& node) {
    const XMLCh* const uri = node.getNamespaceURI();
    return "{" + (uri == nullptr ? std::string() : utf8(uri)) + "}" + utf8(node.getLocalName());
}

std::string attributesOf(const DOMNode& node) {
    std::map<std::string, std::string> sorted;
    const DOMNamedNodeMap& attributes = *node.getAttributes();
    for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
        const DOMNode& attribute = *attributes.item(i);
        if (!XMLString::equals(attribute.getNamespaceURI(), XMLUni::fgXMLNSURIName)) {
            sorted[expandedName(attribute)] = utf8(attribute.getNodeValue());
        }
    }
    std::string text;
    for (const auto& [name, value] : sorted) {
        text += " " + name + "=[" + value + "]";
    }
    return text;
}

} // namespace

std::string meaningOf(const DOMNode& top) {
    std::string meaning;
    bool afterText = false;
    const DOMNode* node = &top;
    bool down = true;
    for (;;) {
        if (down) {
            const auto type = node->getNodeType();
            const bool isText = type == DOMNode::TEXT_NODE || type == DOMNode::CDATA_SECTION_NODE;
            if (isText && !afterText && *node->getNodeValue() != 0) {
                meaning += "\ntext ";
            }
            if (isText) {
                meaning += utf8(node->getNodeValue());
            } else if (type == DOMNode::ELEMENT_NODE) {
                meaning += "\nstart " + expandedName(*node) + attributesOf(*node);
            } else if (type == DOMNode::COMMENT_NODE) {
                meaning += "\ncomment " + utf8(node->getNodeValue());
            } else if (type == DOMNode::PROCESSING_INSTRUCTION_NODE) {
                meaning += "\npi " + utf8(node->getNodeName()) + " " + utf8(node->getNodeValue());
            }
            afterText = isText && (afterText || *node->getNodeValue() != 0);
            if (const DOMNode* const child = node->getFirstChild()) {
                node = child;
                continue;
            }
        }
        if (node->getNodeType() == DOMNode::ELEMENT_NODE) {
            meaning += "\nend";
            afterText = false;
        }
        if (node == &top) {
            return meaning;
        }
        const DOMNode* const sibling = node->getNextSibling();
        down = sibling != nullptr;
        node = down ? sibling : node->getParentNode();
    }
}

std::string utf8(const XMLCh* text) { return Platform::toUtf8(fromXml(text)); }

TemporaryFile::TemporaryFile(std::string_view bytes)
    : path_(std::filesystem::temp_directory_path() /
            ("corvid-document-" + std::to_string(::getpid()) + ".xml")) {
    std::ofstream(path_, std::ios::binary) << bytes;
}

TemporaryFile::~TemporaryFile() { std::filesystem::remove(path_); }

Utf16Text TemporaryFile::path() const { return Platform::fromUtf8(path_.u8string()); }

} // namespace Corvid::XMLUtils::Testing
