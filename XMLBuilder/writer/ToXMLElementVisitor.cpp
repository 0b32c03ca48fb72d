#include "XMLBuilder/writer/ToXMLElementVisitor.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/writer/ToXMLReferenceVisitor.h"
#include "XMLBuilder/writer/writeLink.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;

const MetaMetadata::AttributeFacts& factsOf(const Element& element) {
    return element.metaAttribute()->facts();
}

} // namespace

void ToXMLElementVisitor::visit(const Metadata::SimpleElement& element) {
    const auto* const definition = factsOf(element).definition;
    if (element.isSkipped() ||
        (definition != nullptr && nameOf(*definition).isWrittenAsAttribute)) {
        return;
    }
    start(element);
    ToXMLBaseTypeVisitor writer(sink_);
    element.value()->accept(writer);
    sink_.endElement();
}

void ToXMLElementVisitor::visit(const Metadata::ReferenceElement& element) {
    if (element.isSkipped() || isLeftOut(*element.value())) {
        return;
    }
    start(element);
    writeReference(element, 0, *element.value(), false);
    sink_.endElement();
}

void ToXMLElementVisitor::writeReferences(const Metadata::ReferenceCollectionElement& element) {
    if (element.isSkipped() || (element.size() == 0 && !factsOf(element).isRequired)) {
        return;
    }
    start(element);
    for (std::uint32_t i = 0; i != element.size(); ++i) {
        if (!isLeftOut(element.at(i))) {
            writeReference(element, i, element.at(i), true);
        }
    }
    sink_.endElement();
}

void ToXMLElementVisitor::writeValues(const Metadata::CollectionElement& element) {
    if (element.isSkipped() || (element.value()->size() == 0 && !factsOf(element).isRequired)) {
        return;
    }
    start(element);
    const PropertyName& name = nameOf(*factsOf(element).definition);
    const Types::Collection& items = *element.value();
    ToXMLBaseTypeVisitor writer(sink_);
    for (Types::u32 i = 0; i != items.size(); ++i) {
        sink_.startElement({name.names.uri, name.item.c_str()});
        items.at(i).accept(writer);
        sink_.endElement();
    }
    sink_.endElement();
}

bool ToXMLElementVisitor::isLeftOut(const Types::Reference& reference) const {
    if (!plan_.manner().referencesAsValues || !plan_.manner().skipNonStructural) {
        return false;
    }
    const Metadata::Targets targets = plan_.partition().resolve(reference);
    return !targets.empty() && !KLV::isStructuralMetadataSet(targets.front().key());
}

void ToXMLElementVisitor::writeReference(const Element& element, std::uint32_t item,
                                         const Types::Reference& reference, bool inCollection) {
    const Metadata::Targets targets = plan_.partition().resolve(reference);
    if (targets.empty()) {
        return writeDangling(element, item, reference);
    }
    const MetadataSet& target = targets.front();
    if (plan_.manner().referencesAsValues) {
        ToXMLReferenceVisitor writer(target, pass_.leadsTo(target, element, item), sets_, sink_);
        reference.accept(writer);
        if (inCollection && isDarkGroup(target)) {
            writeDangling(element, item, reference);
        }
    } else if (isDarkGroup(target)) {
        writeDangling(element, item, reference);
    } else {
        const ClassName& name = nameOf(*target.metaMetadataSet());
        writeLink(sink_,
                  {name.names.uri, targets.size() > 1 ? Names::ambiguousLink : name.link.c_str()},
                  reference);
    }
}

void ToXMLElementVisitor::writeDangling(const Element& element, std::uint32_t item,
                                        const Types::Reference& reference) {
    const char16_t* uri = Names::s377m.uri;
    if (const auto others = pass_.danglingUris.find(&element); others != pass_.danglingUris.end()) {
        const auto other = others->second.find(item);
        uri = other == others->second.end() ? uri : other->second;
    }
    writeLink(sink_, {uri, Names::danglingLink}, reference);
}

void ToXMLElementVisitor::start(const Element& element) {
    const auto& facts = factsOf(element);
    if (facts.definition == nullptr) {
        startUnknown(Types::LocalTag(facts.localTag));
    } else {
        const PropertyName& name = nameOf(*facts.definition);
        sink_.startElement({name.names.uri, name.qualified.c_str()});
    }
}

void ToXMLElementVisitor::startUnknown(const Types::LocalTag& tag) {
    const Types::UniversalLabel* const label =
        tag.isStaticLocalTag() ? nullptr : plan_.partition().partitionDictionary().find(tag, false);
    // A dynamic tag that the primer lacks goes here too: without its number it would be lost.
    const Utf16Text text = label == nullptr ? tag.toString(Types::dottedHexadecimal)
                                            : label->toString(Types::dottedHexadecimal);
    const DocumentSink::Attribute attribute{
        {Names::groups.uri, label == nullptr ? Names::staticLocalTag : Names::universalLabel},
        XMLUtils::toXml(text)};
    sink_.startElement({Names::groups.uri, Names::darkElement}, &attribute, 1);
}

} // namespace Corvid::XMLBuilder
