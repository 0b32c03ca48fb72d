#pragma once

#include "host/dictionary/Dictionary.h"
#include "host/types/IdentifierTypes.h"

#include <optional>
#include <string>

namespace Corvid::Tool {

/// A value of a property on one line, as people read it: text in quotes, labels with their names,
/// times and rates as they are usually written, parts of other values by name. Bytes in hexadecimal
/// where the dictionary does not know the property, or they do not fit its type. Cut where it is
/// long.
/// @param label  of the property; nothing where no more than its tag is known.
std::string valueText(const std::optional<Types::UniversalLabel>& label, Types::ByteView bytes,
                      const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Tool
