#pragma once

#include "host/metadata/Element.h"

#include <string>

namespace Corvid::Editing {

/// The bytes of an element's value in a file. It must have one.
std::string bytesOf(const Metadata::Element& element);

} // namespace Corvid::Editing
