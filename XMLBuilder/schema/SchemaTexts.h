#pragma once

#include "host/xmlutils/SchemaValidator.h"

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::XMLBuilder {

/// The schemas of makeSchemas() as texts; the one that describes the root of documents is the
/// first.
/// @throws InvalidDictionary  two things that the documents hold have one name.
std::vector<XMLUtils::SchemaText> schemaTexts(const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::XMLBuilder
