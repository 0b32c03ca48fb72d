#pragma once

#include "XMLBuilder/format/Namespaces.h"
#include "host/base/Templates.h"

#include <map>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::XMLBuilder {

/// One XML Schema document while it is being made. Its elements, named and local, belong to its
/// namespace.
class SchemaDocument {
public:
    using Attributes = std::vector<std::pair<const XMLCh*, std::u16string>>;

    explicit SchemaDocument(const Names::Namespace& target);

    xercesc::DOMElement& root() noexcept { return *root_; }

    /// Appends an element of XML Schema.
    /// @param kind  with the prefix "xs".
    xercesc::DOMElement& add(xercesc::DOMElement& parent, const XMLCh* kind,
                             const Attributes& attributes = {});

    /// Appends a definition that others refer to by its name.
    /// @throws InvalidDictionary  there is one of that kind and name already.
    xercesc::DOMElement& define(const XMLCh* kind, const std::u16string& name,
                                const Attributes& attributes = {});

    /// Tells people what an element or type is.
    void annotate(xercesc::DOMElement& element, const std::u16string& text);

    /// The name of something in any namespace, as this document writes it; the namespace is
    /// imported.
    std::u16string refer(const Names::Namespace& names, const std::u16string& localName);

    /// Takes the finished document.
    Templates::auto_ptr<xercesc::DOMNode> finish();

private:
    std::u16string uri_;
    Templates::auto_ptr<xercesc::DOMNode> document_;
    xercesc::DOMElement* root_;
    std::map<std::u16string, std::u16string> prefixes_; ///< of the namespaces referred to, by URI
    std::map<std::pair<std::u16string, std::u16string>, xercesc::DOMElement*> defined_;
};

/// The name of the file that describes a namespace.
std::u16string schemaFileName(const std::u16string& prefix);

} // namespace Corvid::XMLBuilder
