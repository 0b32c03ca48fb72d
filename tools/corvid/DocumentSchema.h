#pragma once

#include "host/xmlutils/SchemaValidator.h"

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::Tool {

class Messages;

/// The XML Schema documents of the documents that a dictionary leads to, one per namespace; the one
/// that describes the root is the first.
/// @throws InvalidDictionary  two things that the documents hold have one name.
std::vector<XMLUtils::SchemaText> documentSchemas(const MetaMetadata::Dictionary& dictionary);

/// Checks a document against them and says what is wrong with it, a message each.
/// @throws InvalidFormat, ParseError  it is not valid, or no XML.
void validateDocument(const unsigned char* bytes, std::size_t length,
                      const MetaMetadata::Dictionary& dictionary, Messages& messages);

} // namespace Corvid::Tool
