#include "tools/corvid/PropertyList.h"

#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

using Identity = ListedProperty::Identity;

class Identifier : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    Identifier(const Metadata::PartitionDictionary& tags, const Metadata::Element& element)
        : tags_(tags), listed{{}, &element, false, {}} {}

    void visit(const MetaMetadata::UnknownAttribute& attribute) override {
        const Types::LocalTag& tag = attribute.localTag();
        listed.isUnknown = true;
        if (const auto* label = tags_.find(tag, true)) {
            listed.label = *label;
        }
        if (listed.label && (!tag.isStaticLocalTag() ||
                             tags_.dictionary()->findElement(*listed.label) != nullptr)) {
            identify('u', *listed.label);
        } else {
            listed.identity[0] = 't';
            std::copy(tag.bytes().begin(), tag.bytes().end(), listed.identity.begin() + 1);
        }
    }
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override {
        known('m', attribute.metaElement());
    }
    void visit(const MetaMetadata::MetaAttribute& attribute) override {
        known('p', attribute.metaElement());
    }

private:
    void known(Types::u8 kind, const MetaMetadata::MetaElement& definition) {
        identify(kind, definition.label());
        listed.label = labelInFile(tags_, *listed.element, definition);
    }

    void identify(Types::u8 kind, const Types::UniversalLabel& label) {
        const auto bytes = label.withoutVersion();
        listed.identity[0] = kind;
        std::copy(bytes.begin(), bytes.end(), listed.identity.begin() + 1);
    }

    const Metadata::PartitionDictionary& tags_;

public:
    ListedProperty listed;
};

} // namespace

const Types::UniversalLabel& labelInFile(const Metadata::PartitionDictionary& tags,
                                         const Metadata::Element& element,
                                         const MetaMetadata::MetaElement& definition) {
    const Types::u16 tag = element.localTag();
    const auto* const label =
        tag == 0 ? tags.find(definition.label()) : tags.find(Types::LocalTag(tag), true);
    return label == nullptr ? definition.label() : *label;
}

std::vector<ListedProperty> listProperties(const Metadata::PartitionDictionary& tags,
                                           const Metadata::MetadataSet& set) {
    std::vector<ListedProperty> list;
    const auto add = [&](const Metadata::Element& element) {
        if (!element.isSkipped()) {
            Identifier identifier(tags, element);
            element.metaAttribute()->accept(identifier);
            list.push_back(identifier.listed);
        }
    };
    const auto instanceUID =
        Metadata::Structural::StructuralMetadataULs::instanceUID().withoutVersion();
    for (const auto& [label, element] : set.made()) {
        if (label.withoutVersion() != instanceUID) {
            add(*element);
        }
    }
    std::for_each(set.invalidBegin(), set.invalidEnd(),
                  [&](const Metadata::Element* element) { add(*element); });
    std::stable_sort(list.begin(), list.end(),
                     [](const auto& a, const auto& b) { return a.identity < b.identity; });
    return list;
}

} // namespace Corvid::Tool
