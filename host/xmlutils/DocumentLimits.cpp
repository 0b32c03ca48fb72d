#include "host/xmlutils/DocumentLimits.h"

#include "host/xmlutils/LoadDocument.h"
#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/XmlText.h"

#include <string>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>

namespace Corvid::XMLUtils {

using namespace xercesc;

namespace {

/// FNV-1a over the code units, which goes on from another hash.
std::uint64_t hashOf(const XMLCh* text, std::uint64_t hash) noexcept {
    for (; text != nullptr && *text != 0; ++text) {
        hash = (hash ^ *text) * 0x100000001B3U;
    }
    return hash;
}

std::uint64_t hashOf(unsigned int uri, const XMLCh* prefix, const XMLCh* local) noexcept {
    constexpr XMLCh colon[] = u":";
    return hashOf(local, hashOf(colon, hashOf(prefix, 0xCBF29CE484222325U ^ uri)));
}

std::string nameOf(const XMLElementDecl& declaration, const XMLCh* prefix) {
    const std::string local = Platform::toUtf8(fromXml(declaration.getBaseName()));
    return prefix == nullptr || *prefix == 0 ? local
                                             : Platform::toUtf8(fromXml(prefix)) + ':' + local;
}

std::string expected(unsigned int limit) { return ", expected at most " + std::to_string(limit); }

} // namespace

void DocumentLimits::startElement(const XMLElementDecl& declaration, unsigned int uri,
                                  const XMLCh* prefix, const Attributes& attributes,
                                  XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
    const XMLSize_t attributesOpen = attributeCount + (open_.empty() ? 0 : open_.back());
    if (open_.size() == maximumElementDepth || attributesOpen > maximumOpenAttributes) {
        refuse(nameOf(declaration, prefix), attributesOpen);
    }
    countNames(declaration, uri, prefix, attributes, attributeCount);
    if (!isEmpty) { // of an empty element no end is told
        open_.push_back(attributesOpen);
    }
    next_.startElement(declaration, uri, prefix, attributes, attributeCount, isEmpty, isRoot);
}

void DocumentLimits::endElement(const XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                                const XMLCh* prefix) {
    open_.pop_back();
    next_.endElement(declaration, uri, isRoot, prefix);
}

void DocumentLimits::startDocument() {
    open_.clear();
    names_.clear();
    next_.startDocument();
}

void DocumentLimits::refuse(const std::string& element, XMLSize_t attributes) const {
    const std::size_t depth = open_.size() + 1;
    throwParseError(scanner_, "element " + element +
                                  (depth > maximumElementDepth
                                       ? " stands " + std::to_string(depth) + " deep" +
                                             expected(maximumElementDepth)
                                       : " and those around it have " + std::to_string(attributes) +
                                             " attributes" + expected(maximumOpenAttributes)));
}

void DocumentLimits::countNames(const XMLElementDecl& declaration, unsigned int uri,
                                const XMLCh* prefix, const Attributes& attributes,
                                XMLSize_t attributeCount) {
    names_.insert(hashOf(uri, prefix, declaration.getBaseName()));
    for (XMLSize_t i = 0; i != attributeCount; ++i) {
        const XMLAttr& attribute = *attributes.elementAt(i);
        names_.insert(hashOf(attribute.getURIId(), attribute.getPrefix(), attribute.getName()));
    }
    if (names_.size() > maximumNames) {
        throwParseError(scanner_, "element " + nameOf(declaration, prefix) + ": " +
                                      std::to_string(names_.size()) +
                                      " different names of elements and "
                                      "attributes so far" +
                                      expected(maximumNames));
    }
}

} // namespace Corvid::XMLUtils
