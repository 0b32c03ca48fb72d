#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"

#include "XMLBuilder/reader/FromXMLElementVisitor.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
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
    reading_.attempt(node, [&] {
        FromXMLElementVisitor reader(node, definition, reading_, emptyPartsOf(element));
        element.accept(reader);
    });
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
    identifier_ = reading_.attribute(element_, Names::rp210, Names::instanceUID);
    if (reading_.strictness() != nullptr) {
        checkSet(*set.metaMetadataSet());
    }
    if (reading_.supplement() != nullptr) {
        supplemented_ = reading_.supplement()->enter(set, reading_.textOf(identifier_));
    }
    const auto& properties = nameOf(*set.metaMetadataSet()).properties().byLabel;
    const auto written = open.children().count() + attributeCount(element_);
    set.reserve(std::min(written, properties.size()));
    read_.reserve(open.children().count());
    // The set has an element for each, but makes those that are asked for only.
    for (const PropertyName* const property : properties) {
        if (property->place == PropertyName::Place::child) {
            readProperty(set, *property, open);
        } else {
            readAttribute(set, *property);
        }
    }
    readExtensions(set, open);
    if (read_.size() != open.children().count()) {
        leaveOutTheRest(*set.metaMetadataSet());
    }
    reading_.place() = outer;
}

void FromXMLMetadataSetVisitor::checkSet(const MetaMetadata::MetaMetadataSet& setClass) {
    Strictness& strictness = *reading_.strictness();
    instanceUID_ = strictness.enterSet(element_, setClass, identifier_);
    strictness.checkAttributes(
        element_, Names::rp210.uri,
        {Names::localPart(Names::instanceUID), Names::localPart(Names::generationUID)});
}

void FromXMLMetadataSetVisitor::leaveOutTheRest(const MetaMetadata::MetaMetadataSet& setClass) {
    std::sort(read_.begin(), read_.end());
    for (const auto* child = firstElement(element_); child != nullptr;
         child = nextElement(*child)) {
        if (!std::binary_search(read_.begin(), read_.end(), child)) {
            if (reading_.strictness() != nullptr) {
                reading_.strictness()->refuseProperty(*child, setClass);
            } else {
                reading_.leaveOut(*child);
            }
        }
    }
}

void FromXMLMetadataSetVisitor::readProperty(Metadata::MetadataSet& set,
                                             const PropertyName& property, OpenSet& open) {
    if (!open.children().mayHave(property.local)) {
        return;
    }
    const char16_t* const uri = reading_.strictness() == nullptr
                                    ? open.prefixes().uriOf(property.names.prefix)
                                    : property.names.uri;
    const DocumentNode* const node =
        open.children().first(property.local, uri == nullptr ? fallbackUri : uri);
    if (node != nullptr) {
        read_.push_back(node);
        if (reading_.strictness() != nullptr) {
            reading_.strictness()->checkAttributes(*node, nullptr, {});
        }
        fill(*set.find(property.definition.label()), *node, &property.definition);
    }
}

void FromXMLMetadataSetVisitor::readAttribute(Metadata::MetadataSet& set,
                                              const PropertyName& property) {
    const bool identifies = property.place == PropertyName::Place::instanceAttribute;
    const auto* const attribute =
        identifies ? identifier_ : reading_.attribute(element_, Names::rp210, property.attribute);
    if (attribute == nullptr) {
        return;
    }
    Element& element = *set.find(property.definition.label());
    if (!identifies) {
        fill(element, *attribute, &property.definition);
        return;
    }
    // The set keeps the identifier that it was made with, unless the document has named it before.
    const Types::UUID identifier =
        reading_.strictness() != nullptr
            ? instanceUID_.value_or(Types::UUID())
            : reading_.identifierOf(identifier_->value, [&set] { return set.instanceUID(); });
    if (auto* simple = dynamic_cast<Metadata::SimpleElement*>(&element)) {
        simple->set(identifier.clone(), false);
    }
}

void FromXMLMetadataSetVisitor::readExtensions(Metadata::MetadataSet& set, OpenSet& open) {
    static constexpr HashedName name(Names::localPart(Names::extensionElements));
    const char16_t* const uri = reading_.strictness() == nullptr
                                    ? open.prefixes().uriOf(Names::groups.prefix)
                                    : Names::groups.uri;
    if (uri == nullptr) {
        return;
    }
    const DocumentNode* container = open.children().first(name, uri);
    if (container == nullptr) {
        return;
    }
    read_.push_back(container);
    if (reading_.strictness() != nullptr) {
        refuseText(*container, reading_.strictness()->mistakes());
        reading_.strictness()->checkAttributes(*container, nullptr, {});
    }
    const DocumentNode* child = firstElement(*container);
    for (; child != nullptr && !reading_.mustWait(*child); child = nextElement(*child)) {
        readExtension(set, *child);
    }
    if (child != nullptr) {
        reading_.wait(set, *child);
    }
}

void FromXMLMetadataSetVisitor::readExtension(Metadata::MetadataSet& set,
                                              const DocumentNode& extension) {
    const auto* definition = reading_.findProperty(extension);
    Strictness* const strictness = reading_.strictness();
    if (strictness != nullptr && !strictness->checkExtension(extension, definition)) {
        return;
    }
    reading_.attempt(extension, [&] { addExtension(set, extension, definition); });
}

void FromXMLMetadataSetVisitor::addExtension(Metadata::MetadataSet& set,
                                             const DocumentNode& extension,
                                             const MetaMetadata::MetaElement* definition) {
    const Element::Attribute attribute =
        definition != nullptr
            ? Element::Attribute(new MetaMetadata::MisplacedAttribute(*definition))
            : Element::Attribute(new MetaMetadata::UnknownAttribute(
                  reading_.tags().of(
                      reading_.attributeText(extension, Names::groups, Names::staticLocalTag),
                      reading_.attributeText(extension, Names::groups, Names::universalLabel)),
                  MetaMetadata::UnknownAttribute::unknownLabel));
    fill(set.createInvalidElement(attribute), extension, definition);
}

} // namespace Corvid::XMLBuilder
