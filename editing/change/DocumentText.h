#pragma once

#include "host/types/DataType.h"

#include <string>

namespace Corvid::Editing {

/// What a document has for a value, on one line: its text, or its parts by name, "Major 1, Minor
/// 2". UTF-8.
std::string documentText(const Types::SimpleDataType& value);

} // namespace Corvid::Editing
