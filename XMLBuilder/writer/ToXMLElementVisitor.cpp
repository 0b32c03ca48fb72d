#include "XMLBuilder/writer/ToXMLElementVisitor.h"

#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/writer/ToXMLReferenceVisitor.h"
#include "XMLBuilder/writer/writeTargetInstance.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

namespace {

using Kind = ToXMLMetaAttributeVisitor::Kind;
using Metadata::MetadataSet;
using xercesc::DOMElement;

ToXMLMetaAttributeVisitor attributeOf(const Metadata::Element& element) {
    ToXMLMetaAttributeVisitor attribute;
    element.metaAttribute()->accept(attribute);
    return attribute;
}

bool isDarkGroup(const MetadataSet& set) {
    return set.metaMetadataSet() == nullptr &&
           dynamic_cast<const Metadata::DarkParsedGroup*>(&set) != nullptr;
}

} // namespace

ToXMLElementVisitor::ToXMLElementVisitor(Metadata::PartitionMetadata* partition, DOMElement* parent,
                                         bool referencesAsValues, bool skipNonStructural,
                                         NamespaceMap* namespaces, ToXMLMetadataSetVisitor* walk)
    : partition_(partition), parent_(parent), referencesAsValues_(referencesAsValues),
      skipNonStructural_(skipNonStructural), namespaces_(namespaces), walk_(walk) {}

void ToXMLElementVisitor::visit(const Metadata::SimpleElement& element) {
    if (element.isSkipped()) {
        return;
    }
    const auto attribute = attributeOf(element);
    const Types::SimpleDataType& value = *element.value();
    if (attribute.metaElement() != nullptr) {
        const NamespaceMap::NodeName& name = namespaces_->nameOf(*attribute.metaElement());
        if (name.identifies) {
            auto* node =
                parent_->getOwnerDocument()->createAttributeNS(name.uri, name.qualified.c_str());
            ToXMLBaseTypeVisitor writer(node);
            value.accept(writer);
            // A program can give the property a value that is no identifier: it has no place here.
            if (*node->getValue() != 0) {
                parent_->setAttributeNodeNS(node);
            }
            return;
        }
    }
    DOMElement* node = createNamed(attribute);
    place(node, attribute);
    ToXMLBaseTypeVisitor writer(node, namespaces_);
    value.accept(writer);
}

void ToXMLElementVisitor::visit(const Metadata::ReferenceElement& element) {
    if (element.isSkipped()) {
        return;
    }
    const auto attribute = attributeOf(element);
    const Metadata::Targets targets = partition_->resolve(*element.value());
    DOMElement* node = createNamed(attribute);
    if (isLeftOut(targets)) {
        return;
    }
    // Still empty: for an element with children Xerces-C looks at all elements around it.
    place(node, attribute);
    writeReference(*element.value(), targets, node, false);
}

void ToXMLElementVisitor::writeReferences(const Metadata::ReferenceCollectionElement& element) {
    if (element.isSkipped()) {
        return;
    }
    if (collection_ == nullptr) {
        const auto attribute = attributeOf(element);
        if (element.size() == 0 && !attribute.isRequired()) {
            return;
        }
        collection_ = createNamed(attribute);
        nextReference_ = 0;
        place(collection_, attribute);
    }
    while (nextReference_ != element.size()) {
        const Types::Reference& reference = element.at(nextReference_++);
        const Metadata::Targets targets = partition_->resolve(reference);
        if (!isLeftOut(targets) && writeReference(reference, targets, collection_, true)) {
            return;
        }
    }
    collection_ = nullptr;
}

void ToXMLElementVisitor::writeValues(const Metadata::CollectionElement& element) {
    if (element.isSkipped()) {
        return;
    }
    const Types::Collection& items = *element.value();
    const auto attribute = attributeOf(element);
    if (items.size() == 0 && !attribute.isRequired()) {
        return;
    }
    DOMElement* node = createNamed(attribute);
    place(node, attribute);
    if (items.size() == 0) {
        return;
    }
    const NamespaceMap::NodeName& name = namespaces_->nameOf(*attribute.metaElement());
    const std::u16string itemName = std::u16string(name.prefix) + u":Element";
    for (Types::u32 i = 0; i != items.size(); ++i) {
        DOMElement* item = parent_->getOwnerDocument()->createElementNS(name.uri, itemName.c_str());
        node->appendChild(item);
        ToXMLBaseTypeVisitor writer(item, namespaces_);
        items.at(i).accept(writer);
    }
}

bool ToXMLElementVisitor::isLeftOut(const Metadata::Targets& targets) const {
    return referencesAsValues_ && !targets.empty() && isSkipped(targets.front());
}

bool ToXMLElementVisitor::isSkipped(const MetadataSet& target) const {
    return skipNonStructural_ && !KLV::isStructuralMetadataSet(target.key());
}

bool ToXMLElementVisitor::writeReference(const Types::Reference& reference,
                                         const Metadata::Targets& targets, DOMElement* element,
                                         bool inCollection) {
    if (targets.empty()) {
        writeDangling(reference, element);
        return false;
    }
    const MetadataSet& target = targets.front();
    if (referencesAsValues_) {
        ToXMLReferenceVisitor writer(&target, element, namespaces_, walk_);
        reference.accept(writer);
        if (inCollection && isDarkGroup(target)) {
            writeDangling(reference, element);
        }
        return writer.hasEntered();
    }
    if (isDarkGroup(target)) {
        writeDangling(reference, element);
        walk_->enter(target, parent_);
        return false;
    }
    return writeLink(reference, target, targets.size() > 1, element);
}

bool ToXMLElementVisitor::writeLink(const Types::Reference& reference, const MetadataSet& target,
                                    bool ambiguous, DOMElement* element) {
    const NamespaceMap::NodeName& name = namespaces_->linkNameOf(*target.metaMetadataSet());
    const XMLCh* linkName = ambiguous ? Names::ambiguousLink : name.qualified.c_str();
    DOMElement* link = parent_->getOwnerDocument()->createElementNS(name.uri, linkName);
    element->appendChild(link);
    writeTarget(reference, link);
    if (!reference.isStrong() || isSkipped(target)) {
        return false;
    }
    auto* besideTheSet = static_cast<DOMElement*>(parent_->getParentNode());
    return walk_->enter(target, besideTheSet);
}

void ToXMLElementVisitor::writeDangling(const Types::Reference& reference, DOMElement* element) {
    DOMElement* link = parent_->getOwnerDocument()->createElementNS(
        namespaces_->uriOf(Names::s377m.prefix).data(), Names::danglingLink);
    element->appendChild(link);
    writeTarget(reference, link);
}

void ToXMLElementVisitor::writeTarget(const Types::Reference& reference, DOMElement* link) {
    namespaces_->insert(Names::types);
    writeTargetInstance(reference, link);
}

DOMElement* ToXMLElementVisitor::createNamed(const ToXMLMetaAttributeVisitor& attribute) {
    auto* document = parent_->getOwnerDocument();
    if (attribute.metaElement() == nullptr) {
        namespaces_->insert(Names::groups);
        return document->createElementNS(Names::groups.uri, Names::darkElement);
    }
    const NamespaceMap::NodeName& name = namespaces_->nameOf(*attribute.metaElement());
    return document->createElementNS(name.uri, name.qualified.c_str());
}

void ToXMLElementVisitor::place(DOMElement* element, const ToXMLMetaAttributeVisitor& attribute) {
    if (attribute.kind() == Kind::placed) {
        parent_->appendChild(element);
        return;
    }
    // A reader takes extensions in only where the prefix is declared at the set.
    namespaces_->insert(Names::groups);
    DOMElement* container = extensions();
    if (attribute.kind() == Kind::unknown) {
        nameUnknown(element, attribute.localTag());
    }
    container->appendChild(element);
    if (container != parent_->getLastChild()) {
        parent_->appendChild(container);
    }
}

void ToXMLElementVisitor::nameUnknown(DOMElement* element, const Types::LocalTag& tag) {
    const Types::UniversalLabel* label =
        tag.isStaticLocalTag() ? nullptr : partition_->partitionDictionary().find(tag, false);
    const auto set = [element](const XMLCh* name, const Utf16Text& text) {
        element->setAttributeNS(Names::groups.uri, name, XMLUtils::toXml(text.c_str()));
    };
    if (label == nullptr) {
        // A dynamic tag that the primer lacks goes here too: without its number it would be lost.
        set(Names::staticLocalTag, tag.toString(Types::dottedHexadecimal));
    } else {
        set(Names::universalLabel, label->toString(Types::dottedHexadecimal));
    }
}

DOMElement* ToXMLElementVisitor::extensions() {
    if (extensions_ == nullptr) {
        extensions_ = parent_->getOwnerDocument()->createElementNS(Names::groups.uri,
                                                                   Names::extensionElements);
        parent_->appendChild(extensions_);
    }
    return extensions_;
}

} // namespace Corvid::XMLBuilder
