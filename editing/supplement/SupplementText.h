#pragma once

#include "XMLBuilder/reader/strict/ReadStrictly.h"
#include "editing/supplement/DocumentSupplement.h"

#include <string_view>

namespace Corvid::Editing {

/// What the instructions of a supplement have as target, and the version of what they say.
constexpr std::string_view supplementTarget = "corvid";
constexpr std::string_view supplementFormat = "1";

constexpr const char* nameOf(DocumentSupplement::Form::Unit unit) {
    return unit == DocumentSupplement::Form::Unit::octets ? "octets" : "item";
}

/// The processing instructions of a supplement, in the order in which they are written, without
/// "<?" and "?>"; ASCII. The first names the format and is always there: a document without it has
/// lost what the others said.
std::vector<std::string> toInstructions(const DocumentSupplement& supplement);

using XMLBuilder::Instruction;

/// Finds the processing instructions in front of the root of a document. What is no document in
/// UTF-8, UTF-16, or another encoding that extends ASCII, has none.
std::vector<Instruction> instructionsInFront(std::string_view document);

/// Reads the instructions of a supplement; others are passed over.
/// @throws InvalidFormat  one is malformed, or says again or otherwise what another has said; the
///                        message has the line.
DocumentSupplement parseSupplement(const std::vector<Instruction>& instructions);

} // namespace Corvid::Editing
