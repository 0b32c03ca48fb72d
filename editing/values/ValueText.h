#pragma once

#include "Corvid_Editing/Export.h"
#include "host/types/DataType.h"

#include <string>

namespace Corvid::Editing {

/// A value as people write it: the text that a document has for it; a compound value with its parts
/// joined: 30000/1001, 2024-02-29 12:00:00.000. UTF-8; a lone surrogate becomes U+FFFD. Text may
/// have line breaks of its own.
CORVID_EDITING_EXPORT std::string valueText(const Types::SimpleDataType& value);

} // namespace Corvid::Editing
