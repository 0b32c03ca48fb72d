#pragma once

#include "Corvid/Export.h"

#include <string>

namespace Corvid::MetaMetadata {

class MetaDefinition;
class MetaElement;

/// What the dictionary calls a definition, in UTF-8.
CORVID_EXPORT std::string tagName(const MetaDefinition& definition);

/// The place of a property among those of its set in a document; 0 where the dictionary gives none.
CORVID_EXPORT unsigned long schemaIndex(const MetaElement& definition);

} // namespace Corvid::MetaMetadata
