#pragma once

#include "XMLBuilder/writer/NamespaceMap.h"
#include "host/types/References.h"

#include <xercesc/dom/DOM.hpp>

namespace Corvid::Metadata {
class MetadataSet;
}

namespace Corvid::XMLBuilder {

class ToXMLMetadataSetVisitor;

/// Writes one reference as a value: a strong one as the set it owns, a weak one as a small element
/// that names the class and the identifier of its target.
class ToXMLReferenceVisitor : public Types::Visitors::NullVisitor {
public:
    /// Everything is borrowed.
    /// @param target  the set that the reference leads to.
    /// @param parent  the element of the property.
    ToXMLReferenceVisitor(const Metadata::MetadataSet* target, xercesc::DOMElement* parent,
                          NamespaceMap* namespaces, ToXMLMetadataSetVisitor* walk)
        : target_(target), parent_(parent), namespaces_(namespaces), walk_(walk) {}

    using NullVisitor::visit;
    void visit(const Types::StrongReference& reference) override;
    /// A reference to a set of unknown class writes nothing.
    void visit(const Types::WeakReference& reference) override;

    /// True when the walk has entered the target.
    bool hasEntered() const noexcept { return entered_; }

private:
    const Metadata::MetadataSet* target_;
    xercesc::DOMElement* parent_;
    NamespaceMap* namespaces_;
    ToXMLMetadataSetVisitor* walk_;
    bool entered_ = false;
};

} // namespace Corvid::XMLBuilder
