#include "host/xmlutils/FindNodes.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/ExceptionText.h"
#include "host/xmlutils/XmlText.h"

#include <memory>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::XMLUtils {

namespace {

struct Release {
    template <class T> void operator()(T* object) const { object->release(); }
};
template <class T> using Released = std::unique_ptr<T, Release>;
using Nodes = Templates::vector<xercesc::DOMNode*>;

xercesc::DOMDocument& documentOf(xercesc::DOMNode& node) {
    return node.getNodeType() == xercesc::DOMNode::DOCUMENT_NODE
               ? static_cast<xercesc::DOMDocument&>(node)
               : *node.getOwnerDocument();
}

Nodes evaluate(xercesc::DOMDocument& document, xercesc::DOMNode& from, const Utf16Text& xpath) {
    xercesc::DOMNode* const around = &from == &document ? document.getDocumentElement() : &from;
    const Released<xercesc::DOMXPathNSResolver> prefixes(document.createNSResolver(around));
    const Released<xercesc::DOMXPathResult> result(
        document.evaluate(toXml(xpath), &from, prefixes.get(),
                          xercesc::DOMXPathResult::SNAPSHOT_RESULT_TYPE, nullptr));
    Nodes nodes;
    for (XMLSize_t i = 0; result->snapshotItem(i); ++i) {
        nodes.push_back(result->getNodeValue());
    }
    return nodes;
}

constexpr const char* noXPath =
#ifdef CORVID_WITH_XQILLA
    "the document has no XPath: expected one that is made after "
    "XMLUtils::Initializer::domImplementation() was called";
#else
    "the document has no XPath: this build of Corvid is one without XQilla";
#endif

} // namespace

Nodes findNodes(xercesc::DOMNode& from, const std::string& xpath) {
    xercesc::DOMDocument& document = documentOf(from);
    if (!document.getImplementation()->hasFeature(u"XPath2", u"3.0")) {
        throw Exceptions::InvalidArgument(noXPath, CORVID_HERE);
    }
    try {
        return evaluate(document, from, Platform::fromUtf8(xpath));
    } catch (const xercesc::DOMException&) {
        throw Exceptions::InvalidFormat("XPath " + xpath + ": " + currentMessage(), CORVID_HERE);
    }
}

} // namespace Corvid::XMLUtils
