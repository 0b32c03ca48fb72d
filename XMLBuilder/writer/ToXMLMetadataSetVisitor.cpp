#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"

#include "XMLBuilder/InlineDepth.h"
#include "XMLBuilder/writer/DarkWriter.h"
#include "XMLBuilder/writer/Document.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"

#include <cassert>

namespace Corvid::XMLBuilder {

ToXMLMetadataSetVisitor::ToXMLMetadataSetVisitor(Metadata::PartitionMetadata* partition,
                                                 xercesc::DOMElement* parent,
                                                 bool referencesAsValues, bool skipNonStructural,
                                                 NamespaceMap* namespaces, VisitedRecord* visited)
    : partition_(partition), parent_(parent), referencesAsValues_(referencesAsValues),
      skipNonStructural_(skipNonStructural), namespaces_(namespaces), visited_(visited) {}

void ToXMLMetadataSetVisitor::visit(const Metadata::MetadataSet& set) {
    enter(set, parent_);
    while (!frames_.empty()) {
        Frame& frame = frames_.back();
        if (frame.next == entries_.size()) {
            entries_.resize(frame.first);
            frames_.pop_back();
            continue;
        }
        entries_[frame.next].element->accept(frame.writer);
        if (frame.writer.isDone()) {
            ++frame.next;
        }
    }
}

bool ToXMLMetadataSetVisitor::enter(const Metadata::MetadataSet& set, xercesc::DOMElement* parent) {
    if (!visited_->insert(set)) {
        return false;
    }
    auto* document = parent->getOwnerDocument();
    const auto* definition = set.metaMetadataSet();
    if (definition == nullptr) {
        if (const auto* group = dynamic_cast<const Metadata::DarkParsedGroup*>(&set)) {
            writeDarkParsedGroup(*group, *partition_, document, *namespaces_);
        }
        return false;
    }
    assert(!referencesAsValues_ || frames_.size() < greatestInlineDepth);
    const NamespaceMap::NodeName& name = namespaces_->nameOf(*definition);
    auto* element = document->createElementNS(name.uri, name.qualified.c_str());
    parent->appendChild(element);

    const std::size_t first = entries_.size();
    appendInDocumentOrder(set, entries_);
    frames_.push_back(Frame{ToXMLElementVisitor(partition_, element, referencesAsValues_,
                                                skipNonStructural_, namespaces_, this),
                            first, first});
    return true;
}

} // namespace Corvid::XMLBuilder
