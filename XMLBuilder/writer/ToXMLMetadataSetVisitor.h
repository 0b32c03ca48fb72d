#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/metadata/Visitors.h"

#include <string>
#include <vector>

namespace Corvid::XMLBuilder {

struct PropertyName;

/// Writes a set as an element; where references are values, with the sets inside it for which this
/// is the place. Calls nest with these, which the plan has bounded.
class ToXMLMetadataSetVisitor : public Metadata::Visitors::MetadataSetVisitor {
public:
    /// Everything is borrowed.
    ToXMLMetadataSetVisitor(const DocumentPlan& plan, const WriterPass& pass, DocumentSink& sink)
        : plan_(plan), pass_(pass), sink_(sink) {}

    /// Writes the set; nothing for one of unknown class.
    void visit(const Metadata::MetadataSet& set) override;

private:
    using Properties = std::vector<const Metadata::Element*>;

    void start(const Metadata::MetadataSet& set, const Properties& properties);

    const DocumentPlan& plan_;
    const WriterPass& pass_;
    DocumentSink& sink_;
    struct Identifier {
        const PropertyName* name;
        std::u16string text;
    };

    std::vector<Identifier> identifiers_; ///< of one set
    std::vector<DocumentSink::Attribute> attributes_;
};

} // namespace Corvid::XMLBuilder
