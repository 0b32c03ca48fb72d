#pragma once

#include <cstddef>

namespace Corvid::XMLBuilder {

/// How many sets may be inside each other when references are values, the outermost included. A
/// writer refuses to nest deeper, and so does a reader: both work by calls that nest with the sets.
inline constexpr std::size_t greatestInlineDepth = 256;

} // namespace Corvid::XMLBuilder
