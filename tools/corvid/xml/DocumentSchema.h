#pragma once

#include <cstddef>

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::Tool {

class Messages;

/// Checks a document against the schemas of a dictionary and says what is wrong with it, a message
/// each.
/// @throws InvalidFormat, ParseError  it is not valid, or no XML.
void validateDocument(const unsigned char* bytes, std::size_t length,
                      const MetaMetadata::Dictionary& dictionary, Messages& messages);

} // namespace Corvid::Tool
