#pragma once

#include "XMLBuilder/reader/Supplement.h"
#include "host/metadata/Element.h"

#include <optional>
#include <string>

namespace Corvid::Editing {

/// The bytes that an element's value has after it went through a document; nothing where no value
/// comes back, or where reading is refused.
///
/// How a value is written and read is said here a second time on purpose: a supplement that asked
/// writer and reader could not make up for their mistakes, and `check` would not find them.
/// @param empty  how the document is read, see XMLBuilder::EmptyParts.
std::optional<std::string> bytesFromDocument(const Metadata::Element& element,
                                             XMLBuilder::EmptyParts empty);

} // namespace Corvid::Editing
