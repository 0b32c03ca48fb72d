#pragma once

#include "host/metadata/Element.h"

#include <string>

namespace Corvid::Editing {

/// A value for people, on one line: text in quotes, else bytes in hexadecimal; cut where it is
/// long.
std::string shortValue(const Metadata::Element& element);

} // namespace Corvid::Editing
