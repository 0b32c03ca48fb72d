#include "tools/corvid/dictionary/Explainer.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaAttribute.h"

namespace Corvid::Tool {

namespace {

using namespace MetaMetadata;

std::string valueTypeOf(const MetaElement& element) {
    std::string type = Types::Identifiers::typeName(element.dataType());
    if (!element.isCollection()) {
        return type;
    }
    const auto& collection = static_cast<const MetaCollectionElement&>(element);
    return type + "(" + Types::Identifiers::typeName(collection.dataSubType()) + ")";
}

/// What a definition says of one of its own properties.
const MetaAttribute& metaAttribute(const AbstractMetaAttribute& attribute) {
    // A class lists no other kind.
    return static_cast<const MetaAttribute&>(attribute);
}

/// A property of a set, with the class that lists it.
struct ListedProperty {
    const MetaAttribute* attribute;
    const MetaMetadataSet* of;
};

/// The properties of a set, its ancestors' first.
std::vector<ListedProperty> propertiesOf(const MetaMetadataSet& set) {
    std::vector<ListedProperty> properties;
    for (const auto& attribute : set.attributes()) {
        const MetaAttribute& property = metaAttribute(*attribute);
        const MetaMetadataSet* of = &set;
        while (of->parent() != nullptr &&
               of->parent()->find(property.metaElement().label()) != nullptr) {
            of = of->parent();
        }
        properties.push_back({&property, of});
    }
    return properties;
}

} // namespace

void Explainer::operator()(const MetaMetadataSet* set) {
    begin("set");
    addDefinition(*set);
    addAliases();
    json_["key"] = Platform::toUtf8(set->key().toString());
    json_["concrete"] = set->isConcrete();
    Json chain = Json::array();
    for (const auto* ancestor = set->parent(); ancestor != nullptr; ancestor = ancestor->parent()) {
        chain.push_back(MetaMetadata::tagName(*ancestor));
    }
    json_["inherits"] = std::move(chain);
    Json heirs = Json::array();
    for (const MetaMetadataSet* heir : uses_.heirs(*set)) {
        heirs.push_back(MetaMetadata::tagName(*heir));
    }
    json_["inheritedBy"] = std::move(heirs);
    if (const auto group = Registers::findGroup(set->key())) {
        addSource(*group);
    }
    Json properties = Json::array();
    for (const auto& [attribute, of] : propertiesOf(*set)) {
        const MetaElement& element = attribute->metaElement();
        properties.push_back(
            {{"property", MetaMetadata::tagName(element)},
             {"localTag", dotted(element.staticLocalTag())},
             {"type", valueTypeOf(element)},
             {"status", AttributeRequiredStatus::names[attribute->requiredStatus()]},
             {"of", MetaMetadata::tagName(*of)},
             {"label", dotted(element.label())}});
    }
    json_["properties"] = std::move(properties);
}

void Explainer::operator()(const MetaElement* element) {
    begin("property");
    addDefinition(*element);
    addAliases();
    json_["label"] = dotted(element->label());
    json_["localTag"] = dotted(element->staticLocalTag());
    json_["type"] = valueTypeOf(*element);
    const auto property = Registers::properties().find(element->label());
    addRegisteredType(property ? property->type() : std::nullopt);
    if (property) {
        addSource(*property);
    }
    Json sets = Json::array();
    for (const MetaMetadataSet* set : uses_.setsWith(*element)) {
        const MetaAttribute& attribute = metaAttribute(**set->find(element->label()));
        sets.push_back({{"set", MetaMetadata::tagName(*set)},
                        {"status", AttributeRequiredStatus::names[attribute.requiredStatus()]},
                        {"inheritedBy", uses_.countDescendants(*set)},
                        {"key", Platform::toUtf8(set->key().toString())}});
    }
    json_["sets"] = std::move(sets);
    if (property) {
        addGroupsWith(*property);
    }
}

} // namespace Corvid::Tool
