#pragma once

#include "host/types/IdentifierTypes.h"

#include <optional>
#include <string_view>

namespace Corvid::Inspection {

/// The label or key that a text of 32 hexadecimal digits means, in any form that people and
/// programs write: dotted pairs, "urn:smpte:ul:" with groups of eight, plain digits, with "0x" or
/// without, and with full stops, hyphens, colons or blanks between them. Nothing for another text.
std::optional<Types::UniversalLabel> parseLabel(std::string_view text);

/// The local tag that a text means: "3c0a", "3C.0A", "0x3c0a". Nothing for another text.
std::optional<Types::u16> parseLocalTag(std::string_view text);

} // namespace Corvid::Inspection
