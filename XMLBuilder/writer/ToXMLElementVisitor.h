#pragma once

#include "XMLBuilder/writer/NamespaceMap.h"
#include "XMLBuilder/writer/ToXMLMetaAttributeVisitor.h"
#include "host/metadata/Elements.h"
#include "host/metadata/Targets.h"

#include <xercesc/dom/DOM.hpp>

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::XMLBuilder {

class ToXMLMetadataSetVisitor;

/// Writes the elements of one set into the set's element, one after the other.
///
/// A collection of strong references is written in steps, because the sets that it leads to come
/// between its references: it has to accept the visitor until isDone().
class ToXMLElementVisitor : public Metadata::Visitors::ElementVisitor {
public:
    /// Everything is borrowed.
    /// @param parent  the set's element.
    /// @param walk    told of the sets that strong references lead to.
    ToXMLElementVisitor(Metadata::PartitionMetadata* partition, xercesc::DOMElement* parent,
                        bool referencesAsValues, bool skipNonStructural, NamespaceMap* namespaces,
                        ToXMLMetadataSetVisitor* walk);

    void visit(const Metadata::ReferenceBatchElement& element) override {
        writeReferences(element);
    }
    void visit(const Metadata::ReferenceArrayElement& element) override {
        writeReferences(element);
    }
    void visit(const Metadata::ReferenceElement& element) override;
    void visit(const Metadata::BatchElement& element) override { writeValues(element); }
    void visit(const Metadata::ArrayElement& element) override { writeValues(element); }
    void visit(const Metadata::SimpleElement& element) override;

    /// True when the element visited last is written to its end.
    bool isDone() const noexcept { return collection_ == nullptr; }

private:
    void writeReferences(const Metadata::ReferenceCollectionElement& element);
    void writeValues(const Metadata::CollectionElement& element);
    /// Whether a reference with these targets is not written at all.
    bool isLeftOut(const Metadata::Targets& targets) const;
    /// Whether a set is not written, wherever it is referred to.
    bool isSkipped(const Metadata::MetadataSet& target) const;
    /// @return true where the walk has entered a set, which has to be written before more is.
    bool writeReference(const Types::Reference& reference, const Metadata::Targets& targets,
                        xercesc::DOMElement* element, bool inCollection);
    bool writeLink(const Types::Reference& reference, const Metadata::MetadataSet& target,
                   bool ambiguous, xercesc::DOMElement* element);
    void writeDangling(const Types::Reference& reference, xercesc::DOMElement* element);
    void writeTarget(const Types::Reference& reference, xercesc::DOMElement* link);

    /// Makes the element of a property, named by the dictionary or as unknown.
    xercesc::DOMElement* createNamed(const ToXMLMetaAttributeVisitor& attribute);
    /// Puts a property's element where it belongs: into the set's element or among its extensions.
    void place(xercesc::DOMElement* element, const ToXMLMetaAttributeVisitor& attribute);
    void nameUnknown(xercesc::DOMElement* element, const Types::LocalTag& tag);
    xercesc::DOMElement* extensions();

    Metadata::PartitionMetadata* partition_;
    xercesc::DOMElement* parent_;
    bool referencesAsValues_;
    bool skipNonStructural_;
    NamespaceMap* namespaces_;
    ToXMLMetadataSetVisitor* walk_;
    xercesc::DOMElement* extensions_ =
        nullptr; ///< the set's extension container, once there is one
    xercesc::DOMElement* collection_ = nullptr; ///< the collection that is being written in steps
    Types::u32 nextReference_ = 0;              ///< the reference in it that is next
};

} // namespace Corvid::XMLBuilder
