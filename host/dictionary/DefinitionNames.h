#pragma once

#include "Corvid/Export.h"

#include <string>
#include <string_view>

namespace Corvid::MetaMetadata {

class MetaDefinition;
class MetaElement;

/// What the dictionary calls a definition, in UTF-8.
CORVID_EXPORT std::string tagName(const MetaDefinition& definition);

/// The same with its prefix in front: "s377m:Preface".
CORVID_EXPORT std::string prefixedName(const MetaDefinition& definition);

/// Whether it is called so, letter by letter.
/// @param name  UTF-8, with the prefix in front or without.
CORVID_EXPORT bool isCalled(const MetaDefinition& definition, std::string_view name);

/// The place of a property among those of its set in a document; 0 where the dictionary gives none.
CORVID_EXPORT unsigned long schemaIndex(const MetaElement& definition);

} // namespace Corvid::MetaMetadata
