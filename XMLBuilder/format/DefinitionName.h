#pragma once

#include "XMLBuilder/format/Namespaces.h"
#include "host/base/Attached.h"

#include <cstdint>
#include <optional>
#include <string>

namespace Corvid::MetaMetadata {
class MetaDefinition;
}

namespace Corvid::XMLBuilder {

/// How documents name the definition of a set or a property. Zero-terminated UTF-16 texts, which
/// live as long as the definition.
struct DefinitionName : Platform::Attached::Content {
    ~DefinitionName() override;

    std::u16string uri;
    std::u16string prefix;
    std::u16string qualified;
    std::u16string link; ///< of a link to a set of the class: its own name with "_REF" after it
    std::u16string item; ///< of an item of a collection
    bool identifies;     ///< it is InstanceUID or GenerationUID, which are attributes of their set
    std::optional<std::uint32_t> order; ///< among the properties of a set; nothing where documents
                                        ///< have no place for the property

    Names::Namespace names() const noexcept { return {uri.c_str(), prefix.c_str()}; }
    const char16_t* localPart() const noexcept { return qualified.c_str() + prefix.size() + 1; }
};

/// The name of a definition, made when it is first asked for.
const DefinitionName& nameOf(const MetaMetadata::MetaDefinition& definition);

} // namespace Corvid::XMLBuilder
