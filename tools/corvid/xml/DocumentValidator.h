#pragma once

#include <cstddef>

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::Tool {

class Messages;

/// Checks the text of a document against its schema and says what is wrong with it, a message each.
///
/// A verb that can do so is given the function: to validate needs Xerces-C, and the verb may not.
/// @throws InvalidFormat, ParseError  it is not valid, or no XML.
using DocumentValidator = void (*)(const unsigned char* bytes, std::size_t length,
                                   const MetaMetadata::Dictionary& dictionary, Messages& messages);

} // namespace Corvid::Tool
