#include "XMLBuilder/format/DefinitionName.h"

#include "XMLBuilder/format/NumberInput.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace Corvid::XMLBuilder {

const char16_t* textOf(const MetaMetadata::MetaDefinition& definition, const char* attribute) {
    const unsigned short* const text = definition.attribute(attribute);
    return text == nullptr ? u"" : XMLUtils::toXml(text);
}

DefinitionName::DefinitionName(const MetaMetadata::MetaDefinition& definition)
    : names{Names::sharedUri(textOf(definition, "XMLNamespaceURI")),
            textOf(definition, "XMLDefaultPrefix")},
      local(textOf(definition, "XMLTagName")),
      qualified(std::u16string(names.prefix) + u':' + local.text) {}

DefinitionName::~DefinitionName() = default;

PropertyName::PropertyName(const MetaMetadata::MetaElement& of)
    : DefinitionName(of), definition(of), item(std::u16string(names.prefix) + u":Element"),
      isWrittenAsAttribute(qualified == Names::instanceUID || qualified == Names::generationUID) {
    if (of.attribute("SchemaIndex") != nullptr) {
        order = readNumber<std::uint32_t>(textOf(of, "SchemaIndex"));
    }
    const std::u16string_view name = local.text;
    if (name == Names::localPart(Names::instanceUID)) {
        place = Place::instanceAttribute;
        attribute = Names::instanceUID;
    } else if (name == Names::localPart(Names::generationUID)) {
        place = Place::otherAttribute;
        attribute = Names::generationUID;
    }
}

ClassProperties::ClassProperties(const MetaMetadata::MetaMetadataSet& setClass) {
    byLabel.reserve(setClass.attributes().size());
    for (const auto& attribute : setClass.attributes()) {
        byLabel.push_back(&nameOf(*attribute->facts().definition));
    }
    std::sort(byLabel.begin(), byLabel.end(), [](const auto* a, const auto* b) {
        return a->definition.label() < b->definition.label();
    });
    std::copy_if(byLabel.begin(), byLabel.end(), std::back_inserter(inDocuments),
                 [](const auto* each) { return each->order.has_value(); });
    std::sort(inDocuments.begin(), inDocuments.end(),
              [](const auto* a, const auto* b) { return *a->order < *b->order; });
}

ClassName::ClassName(const MetaMetadata::MetaMetadataSet& of)
    : DefinitionName(of), definition(of), link(qualified + Names::linkSuffix) {}

const ClassProperties& ClassName::properties() const {
    return properties_.get<ClassProperties>(
        [this] { return std::make_unique<ClassProperties>(definition); });
}

const PropertyName& nameOf(const MetaMetadata::MetaElement& definition) {
    return definition.documentName().get<PropertyName>(
        [&] { return std::make_unique<PropertyName>(definition); });
}

const ClassName& nameOf(const MetaMetadata::MetaMetadataSet& definition) {
    return definition.documentName().get<ClassName>(
        [&] { return std::make_unique<ClassName>(definition); });
}

} // namespace Corvid::XMLBuilder
