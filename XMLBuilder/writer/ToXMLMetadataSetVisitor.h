#pragma once

#include "XMLBuilder/writer/ElementOrder.h"
#include "XMLBuilder/writer/NamespaceMap.h"
#include "XMLBuilder/writer/ToXMLElementVisitor.h"
#include "XMLBuilder/writer/VisitedRecord.h"
#include "host/metadata/Visitors.h"

#include <xercesc/dom/DOM.hpp>

#include <cstddef>
#include <deque>
#include <vector>

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::XMLBuilder {

/// Writes a set as an element of its parent, and the sets that its strong references lead to, each
/// once in a pass, depth first.
///
/// The walk keeps its own stack: however long a chain of references is, the calls do not nest.
class ToXMLMetadataSetVisitor : public Metadata::Visitors::MetadataSetVisitor {
public:
    /// Everything is borrowed.
    /// @param parent  receives the set's element.
    ToXMLMetadataSetVisitor(Metadata::PartitionMetadata* partition, xercesc::DOMElement* parent,
                            bool referencesAsValues, bool skipNonStructural,
                            NamespaceMap* namespaces, VisitedRecord* visited);

    /// Writes the set, or nothing where the pass has written it already. Sets that are written as
    /// values must not nest deeper than refuseDeepNesting() allows.
    void visit(const Metadata::MetadataSet& set) override;

    /// Begins to write a set that a reference in the set at hand leads to. Its properties follow
    /// when the caller has returned to the walk; the set at hand goes on behind them.
    /// @return false where there is nothing left to come.
    bool enter(const Metadata::MetadataSet& set, xercesc::DOMElement* parent);

private:
    /// A set that is being written.
    struct Frame {
        ToXMLElementVisitor writer;
        std::size_t
            first; ///< its entries begin here in entries_ and end where those of the next begin
        std::size_t next;
    };

    Metadata::PartitionMetadata* partition_;
    xercesc::DOMElement* parent_;
    bool referencesAsValues_;
    bool skipNonStructural_;
    NamespaceMap* namespaces_;
    VisitedRecord* visited_;
    std::deque<Frame> frames_; // a frame keeps its place while others come and go behind it
    std::vector<PlacedElement> entries_;
};

} // namespace Corvid::XMLBuilder
