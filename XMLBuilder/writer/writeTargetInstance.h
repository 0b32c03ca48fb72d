#pragma once

#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"

namespace Corvid::XMLBuilder {

/// Gives a link the attribute that holds the identifier of the set it leads to.
inline void writeTargetInstance(const Types::Reference& reference, xercesc::DOMElement* link) {
    xercesc::DOMAttr* attribute =
        link->getOwnerDocument()->createAttributeNS(Names::types.uri, Names::targetInstance);
    link->setAttributeNodeNS(attribute);
    ToXMLBaseTypeVisitor writer(attribute);
    reference.accept(writer);
}

} // namespace Corvid::XMLBuilder
