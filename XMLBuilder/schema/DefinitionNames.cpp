#include "XMLBuilder/schema/DefinitionNames.h"

#include "host/dictionary/MetaDefinition.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

DefinitionNames::DefinitionNames(const MetaMetadata::MetaDefinition& definition)
    : names{XMLUtils::toXml(definition.attribute("XMLNamespaceURI")),
            XMLUtils::toXml(definition.attribute("XMLDefaultPrefix"))},
      tag(XMLUtils::toXml(definition.attribute("XMLTagName"))) {}

} // namespace Corvid::XMLBuilder
