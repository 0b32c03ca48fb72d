#pragma once

#include "host/dictionary/Definitions.h"

#include <optional>
#include <string_view>
#include <utility>

/// The forms of single columns. Each function gives nothing for text that is not of its form.
namespace Corvid::MetaMetadata::Cells {

/// Two hexadecimal digits per byte, joined by full stops.
std::optional<LabelBytes> label(std::string_view text);

/// The same for a local tag; 0 and dynamic tags (from 80.00 on) are not taken.
std::optional<std::uint16_t> staticTag(std::string_view text);

/// A decimal number from 1 to 2147483647.
std::optional<std::uint32_t> number(std::string_view text);

std::optional<AttributeRequiredStatus::Status> status(std::string_view text);

struct ValueType {
    Types::Identifiers::Identifier type;
    Types::Identifiers::Identifier itemType; ///< of a collection, else 0
};

/// The name of a value type, or Array or Batch with the type of the items in parentheses.
std::optional<ValueType> valueType(std::string_view text);

/// True for a name of XML without colon (NCName) of ASCII characters. Tools disagree about which
/// other characters a name may hold, so a dictionary does without.
bool isName(std::string_view text);

/// True for text that can be the name of a namespace.
bool isUri(std::string_view text);

} // namespace Corvid::MetaMetadata::Cells
