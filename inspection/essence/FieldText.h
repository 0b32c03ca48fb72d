#pragma once

#include "host/metadata/Element.h"

#include <string>

namespace Corvid::Inspection {

/// A value in words: "yes" or "no", a date, the name that the registers give to a number of an
/// enumeration. Empty for what has no words: bytes, references, collections.
std::string fieldText(const Metadata::Element& element);

} // namespace Corvid::Inspection
