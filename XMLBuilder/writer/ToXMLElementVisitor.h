#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/metadata/Elements.h"

namespace Corvid::XMLBuilder {

class ToXMLMetadataSetVisitor;

/// Writes the elements of one set, one after the other. Those that are attributes of the set are
/// passed over.
class ToXMLElementVisitor : public Metadata::Visitors::ElementVisitor {
public:
    /// Everything is borrowed.
    /// @param sets  writes the sets that references lead to, where they are values.
    ToXMLElementVisitor(const DocumentPlan& plan, const WriterPass& pass,
                        ToXMLMetadataSetVisitor& sets, DocumentSink& sink)
        : plan_(plan), pass_(pass), sets_(sets), sink_(sink) {}

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

private:
    void writeReferences(const Metadata::ReferenceCollectionElement& element);
    void writeValues(const Metadata::CollectionElement& element);
    bool isLeftOut(const Types::Reference& reference) const;
    void writeReference(const Metadata::Element& element, std::uint32_t item,
                        const Types::Reference& reference, bool inCollection);
    void writeDangling(const Metadata::Element& element, std::uint32_t item,
                       const Types::Reference& reference);

    /// Starts the element of a property, named by the dictionary or as unknown.
    void start(const Metadata::Element& element);
    void startUnknown(const Types::LocalTag& tag);

    const DocumentPlan& plan_;
    const WriterPass& pass_;
    ToXMLMetadataSetVisitor& sets_;
    DocumentSink& sink_;
};

} // namespace Corvid::XMLBuilder
