#include "XMLBuilder/format/DefinitionName.h"

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/format/NumberInput.h"
#include "host/dictionary/MetaDefinition.h"

namespace Corvid::XMLBuilder {

namespace {

std::u16string textOf(const MetaMetadata::MetaDefinition& definition, const char* attribute) {
    const unsigned short* text = definition.attribute(attribute);
    std::u16string copy;
    for (; text != nullptr && *text != 0; ++text) {
        copy += static_cast<char16_t>(*text);
    }
    return copy;
}

std::unique_ptr<DefinitionName> makeName(const MetaMetadata::MetaDefinition& definition) {
    auto name = std::make_unique<DefinitionName>();
    name->uri = textOf(definition, "XMLNamespaceURI");
    name->prefix = textOf(definition, "XMLDefaultPrefix");
    name->qualified = name->prefix + u':' + textOf(definition, "XMLTagName");
    name->link = name->qualified + Names::linkSuffix;
    name->item = name->prefix + u":Element";
    name->identifies =
        name->qualified == Names::instanceUID || name->qualified == Names::generationUID;
    if (definition.attribute("SchemaIndex") != nullptr) {
        name->order = readNumber<std::uint32_t>(textOf(definition, "SchemaIndex").c_str());
    }
    return name;
}

} // namespace

DefinitionName::~DefinitionName() = default;

const DefinitionName& nameOf(const MetaMetadata::MetaDefinition& definition) {
    return definition.documentName().get<DefinitionName>([&] { return makeName(definition); });
}

} // namespace Corvid::XMLBuilder
