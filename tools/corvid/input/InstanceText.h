#pragma once

#include "host/types/IdentifierTypes.h"

#include <optional>
#include <string>

namespace Corvid::Tool {

/// Reads an InstanceUID as people have it: dotted as in the documents (06.0e. ...), as a UUID with
/// or without hyphens, braces or "urn:uuid:" (RFC 4122), in either case.
/// @return nothing where it is none of these.
std::optional<Types::UUID> parseInstanceUID(const std::string& text);

} // namespace Corvid::Tool
