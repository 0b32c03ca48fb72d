#include "host/dictionary/MetaDefinition.h"

#include <cstring>

namespace Corvid::MetaMetadata {

MetaDefinition::~MetaDefinition() = default;

const unsigned short* MetaDefinition::attribute(const char* name) const noexcept {
    const auto is = [name](const char* other) { return std::strcmp(name, other) == 0; };
    if (is("XMLTagName")) {
        return names_.tagName;
    }
    if (is("XMLNamespaceURI")) {
        return names_.namespaceUri;
    }
    if (is("XMLDefaultPrefix")) {
        return names_.prefix;
    }
    return is("SchemaIndex") ? names_.schemaIndex : nullptr;
}

} // namespace Corvid::MetaMetadata
