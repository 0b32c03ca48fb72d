#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"

#include "XMLBuilder/NumberInput.h"
#include "XMLBuilder/writer/DarkWriter.h"
#include "XMLBuilder/writer/Document.h"
#include "XMLBuilder/writer/ToXMLMetaAttributeVisitor.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <string>

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
    if (referencesAsValues_ && frames_.size() == greatestInlineDepth) {
        throw Exceptions::LimitExceeded("set " + Platform::toUtf8(set.instanceUID().toString()) +
                                            ": strong references nest deeper than " +
                                            std::to_string(greatestInlineDepth) +
                                            " sets, write the references as links instead",
                                        CORVID_HERE);
    }
    const NamespaceMap::NodeName& name = namespaces_->nameOf(*definition);
    auto* element = document->createElementNS(name.uri, name.qualified.c_str());
    parent->appendChild(element);

    const std::size_t first = entries_.size();
    listElements(set);
    frames_.push_back(Frame{ToXMLElementVisitor(partition_, element, referencesAsValues_,
                                                skipNonStructural_, namespaces_, this),
                            first, first});
    return true;
}

void ToXMLMetadataSetVisitor::listElements(const Metadata::MetadataSet& set) {
    std::for_each(set.invalidBegin(), set.invalidEnd(), [this](const Metadata::Element* element) {
        entries_.push_back({element, 0});
    });

    const std::size_t firstValid = entries_.size();
    for (const auto& [label, element] : set.made()) {
        ToXMLMetaAttributeVisitor attribute;
        element->metaAttribute()->accept(attribute);
        if (const unsigned short* order = attribute.schemaIndex()) {
            entries_.push_back({element, readNumber<std::uint32_t>(XMLUtils::toXml(order))});
        }
    }
    std::sort(entries_.begin() + static_cast<std::ptrdiff_t>(firstValid), entries_.end(),
              [](const Entry& a, const Entry& b) { return a.order < b.order; });
}

} // namespace Corvid::XMLBuilder
