#pragma once

#include "XMLBuilder/format/Namespaces.h"

#include <string>

namespace Corvid::MetaMetadata {
class MetaDefinition;
}

namespace Corvid::XMLBuilder {

/// What a set or property is called in XML. Lives as long as its definition.
struct DefinitionNames {
    explicit DefinitionNames(const MetaMetadata::MetaDefinition& definition);

    Names::Namespace names;
    std::u16string tag;
};

} // namespace Corvid::XMLBuilder
