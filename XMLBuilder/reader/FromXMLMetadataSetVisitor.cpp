#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"

#include "XMLBuilder/reader/FromXMLElementVisitor.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"
#include "host/metadata/PartitionMetadata.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::Element;

/// What a property's prefix stands for where the document does not declare it.
constexpr const char16_t* fallbackUri = u"http://www.smpte-ra.org";

} // namespace

void FromXMLMetadataSetVisitor::fill(Element& element, const DocumentNode& node,
                                     const MetaMetadata::MetaElement* definition) {
    const ReadingPlace outer = reading_.place();
    reading_.place().property = &node;
    FromXMLElementVisitor reader(node, definition, reading_, emptyPartsOf(element));
    element.accept(reader);
    reading_.place() = outer;
}

EmptyParts FromXMLMetadataSetVisitor::emptyPartsOf(const Element& element) const {
    return supplemented_ != nullptr &&
                   supplemented_->count(identityOf(*element.metaAttribute(),
                                                   reading_.partition().partitionDictionary())) != 0
               ? EmptyParts::values
               : EmptyParts::missing;
}

void FromXMLMetadataSetVisitor::visit(Metadata::MetadataSet& set) {
    OpenSet open(reading_, element_);
    const ReadingPlace outer = std::exchange(reading_.place(), {&element_, nullptr});
    if (reading_.supplement() != nullptr) {
        supplemented_ =
            reading_.supplement()->enter(set, attributeValue(element_, Names::instanceUID));
    }
    const auto& properties = reading_.propertiesOf(*set.metaMetadataSet());
    const auto written = open.children().count() + attributeCount(element_);
    set.reserve(std::min(written, properties.size()));
    read_.reserve(open.children().count());
    // The set has an element for each, but makes those that are asked for only.
    for (const ExpectedProperty& property : properties) {
        if (property.name.place == PropertyName::Place::child) {
            readProperty(set, property, open);
        } else {
            readAttribute(set, property);
        }
    }
    readExtensions(set, open);
    if (read_.size() != open.children().count()) {
        leaveOutTheRest();
    }
    reading_.place() = outer;
}

void FromXMLMetadataSetVisitor::leaveOutTheRest() {
    std::sort(read_.begin(), read_.end());
    for (const auto* child = firstElement(element_); child != nullptr;
         child = nextElement(*child)) {
        if (!std::binary_search(read_.begin(), read_.end(), child)) {
            reading_.leaveOut(*child);
        }
    }
}

void FromXMLMetadataSetVisitor::readProperty(Metadata::MetadataSet& set,
                                             const ExpectedProperty& property, OpenSet& open) {
    const ChildStep& step = property.name.step;
    if (step.isPlain() && !open.children().mayHave(step)) {
        return;
    }
    const char16_t* declared = open.prefixes().uriOf(step.prefix());
    const DocumentNode* const node =
        step.isPlain() ? open.children().first(step, declared == nullptr ? fallbackUri : declared)
                       : reading_.queries()->evaluate(element_, step,
                                                      declared == nullptr ? fallbackUri : nullptr);
    if (node != nullptr) {
        read_.push_back(node);
        fill(*set.find(property.definition.label()), *node, &property.definition);
    }
}

void FromXMLMetadataSetVisitor::readAttribute(Metadata::MetadataSet& set,
                                              const ExpectedProperty& property) {
    const auto* attribute = findAttribute(element_, property.name.attribute);
    if (attribute == nullptr) {
        return;
    }
    Element& element = *set.find(property.definition.label());
    if (property.name.place == PropertyName::Place::otherAttribute) {
        fill(element, *attribute, &property.definition);
        return;
    }
    // The set keeps the identifier that it was made with, unless the document has named it before.
    const Types::UUID& identifier =
        reading_.names().findOrAdd(attribute->value, [&set] { return set.instanceUID(); });
    if (auto* simple = dynamic_cast<Metadata::SimpleElement*>(&element)) {
        simple->set(identifier.clone(), false);
    }
}

void FromXMLMetadataSetVisitor::readExtensions(Metadata::MetadataSet& set, OpenSet& open) {
    static const ChildStep step(Names::groups.prefix, Names::localPart(Names::extensionElements),
                                true);
    const char16_t* uri = open.prefixes().uriOf(step.prefix());
    if (uri == nullptr) {
        return;
    }
    const DocumentNode* container = open.children().first(step, uri);
    if (container == nullptr) {
        return;
    }
    read_.push_back(container);
    for (const auto* child = firstElement(*container); child != nullptr;
         child = nextElement(*child)) {
        readExtension(set, *child);
    }
}

void FromXMLMetadataSetVisitor::readExtension(Metadata::MetadataSet& set,
                                              const DocumentNode& extension) {
    const auto* definition = definitionOf(extension);
    const Element::Attribute attribute =
        definition != nullptr
            ? Element::Attribute(new MetaMetadata::MisplacedAttribute(*definition))
            : Element::Attribute(new MetaMetadata::UnknownAttribute(
                  reading_.tags().of(extension), MetaMetadata::UnknownAttribute::unknownLabel));
    fill(set.createInvalidElement(attribute), extension, definition);
}

const MetaMetadata::MetaElement* FromXMLMetadataSetVisitor::definitionOf(
    const DocumentNode& extension) {
    // Only what the root declares counts here.
    const std::u16string_view name = extension.name;
    const std::size_t colon = name.find(u':');
    const bool prefixed = colon != std::u16string_view::npos;
    std::u16string qualified;
    if (prefixed) {
        const std::u16string declaration = u"xmlns:" + std::u16string(name.substr(0, colon));
        qualified = attributeValue(reading_.root(), declaration);
    }
    qualified += u':';
    qualified += prefixed ? name.substr(colon + 1) : name;
    return reading_.findMetaElementByQualifiedName(qualified);
}

} // namespace Corvid::XMLBuilder
