#pragma once

#include "XMLBuilder/schema/PreparedSchemas.h"
#include "host/xmlutils/SchemaValidator.h"

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::XMLBuilder {

/// Makes the validator of the documents that a dictionary leads to. For the built-in dictionary it
/// is read from schemas compiled at build time; for others the schemas are made and compiled.
/// @param prepared  for the built-in dictionary; where it is stale or damaged, it is not used.
/// @throws InvalidDictionary  two things that the documents hold have one name.
std::unique_ptr<XMLUtils::SchemaValidator> documentValidator(
    const MetaMetadata::Dictionary& dictionary, PreparedSchemas prepared = preparedSchemas());

} // namespace Corvid::XMLBuilder
