#pragma once

#include "XMLBuilder/writer/NamespaceMap.h"
#include "host/types/Types.h"

#include <xercesc/dom/DOM.hpp>

namespace Corvid::XMLBuilder {

/// Writes one value: as text or sub-elements of an element, or as the value of an attribute.
///
/// Only UUIDs and references can be written to an attribute, which stays empty for any other value.
/// Nothing is checked: a month of 13 is written as 13. Exceptions of the DOM pass through.
class ToXMLBaseTypeVisitor : public Types::Visitors::Visitor {
public:
    /// Writes into an element, and takes the namespaces of the parts of values into the map.
    /// @param parent  not null.
    ToXMLBaseTypeVisitor(xercesc::DOMElement* parent, NamespaceMap* namespaces);

    /// Writes the value of an attribute.
    explicit ToXMLBaseTypeVisitor(xercesc::DOMAttr* attribute);

    // One body for every form of value; the list says which type has which.
#define CORVID_VALUE_TYPE(Class, Id, Form) void visit(const Types::Class& value) override;
#include "host/types/ValueTypes.def"

private:
    struct Forms;

    xercesc::DOMElement* parent_ = nullptr;
    xercesc::DOMAttr* attribute_ = nullptr;
};

} // namespace Corvid::XMLBuilder
