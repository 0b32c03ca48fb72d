#include "host/dictionary/DefinitionNames.h"

#include "host/base/Text.h"
#include "host/dictionary/MetaElement.h"

#include <cstdlib>

namespace Corvid::MetaMetadata {

std::string tagName(const MetaDefinition& definition) {
    const auto* const name = definition.attribute("XMLTagName");
    return name == nullptr ? "" : Platform::toUtf8(name);
}

unsigned long schemaIndex(const MetaElement& definition) {
    const auto* const text = definition.attribute("SchemaIndex");
    return text == nullptr ? 0 : std::strtoul(Platform::toUtf8(text).c_str(), nullptr, 10);
}

} // namespace Corvid::MetaMetadata
