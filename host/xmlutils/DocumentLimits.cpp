#include "host/xmlutils/DocumentLimits.h"

#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/XmlText.h"

#include <string>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>

namespace Corvid::XMLUtils {

using namespace xercesc;

namespace {

std::string nameOf(const XMLElementDecl& declaration, const XMLCh* prefix) {
    const std::string local = Platform::toUtf8(fromXml(declaration.getBaseName()));
    return prefix == nullptr || *prefix == 0 ? local
                                             : Platform::toUtf8(fromXml(prefix)) + ':' + local;
}

} // namespace

void DocumentLimits::startElement(const XMLElementDecl& declaration, unsigned int uri,
                                  const XMLCh* prefix, const Attributes& attributes,
                                  XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
    const auto check = [&](const std::string& problem) {
        if (!problem.empty()) {
            throwParseError(scanner_, "element " + nameOf(declaration, prefix) + problem);
        }
    };
    check(limits_.startElement(attributeCount,
                               !isEmpty)); // the end of an empty element is not reported
    if (!isCounted({&declaration, uri})) {
        check(limits_.useName(uri, {prefix, declaration.getBaseName()}));
    }
    for (XMLSize_t i = 0; i != attributeCount; ++i) {
        const XMLAttr& attribute = *attributes.elementAt(i);
        check(limits_.useName(attribute.getURIId(), {attribute.getPrefix(), attribute.getName()}));
    }
    DocumentFilter::startElement(declaration, uri, prefix, attributes, attributeCount, isEmpty,
                                 isRoot);
}

/// Remembers the name in place of another. Most elements of a document share few names, and to find
/// one here costs less than to look at its text.
bool DocumentLimits::isCounted(const ScannedName& name) {
    ScannedName& last = counted_[name.declaration->getId() % counted_.size()];
    if (last.declaration == name.declaration && last.uri == name.uri) {
        return true;
    }
    last = name;
    return false;
}

void DocumentLimits::endElement(const XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                                const XMLCh* prefix) {
    limits_.endElement();
    DocumentFilter::endElement(declaration, uri, isRoot, prefix);
}

void DocumentLimits::startDocument() {
    limits_.startDocument();
    counted_.fill({});
    DocumentFilter::startDocument();
}

} // namespace Corvid::XMLUtils
