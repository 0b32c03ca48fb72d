#pragma once

#include "host/dictionary/Dictionary.h"

#include <string>

namespace Corvid::Testing {

/// What the schemas made of a dictionary do not allow in a document, a line each; empty for a valid
/// one.
std::string validityErrors(const MetaMetadata::Dictionary& dictionary, const std::string& document);

} // namespace Corvid::Testing
