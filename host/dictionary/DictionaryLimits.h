#pragma once

#include <cstddef>

/// What keeps the cost of a dictionary in proportion to its size, whatever it holds. The dictionary
/// that comes with the library uses less than a quarter of each.
namespace Corvid::MetaMetadata {

/// Namespaces. A schema is made of each, and all of their files are open at once.
inline constexpr std::size_t mostNamespaces = 512;

/// Characters of a prefix or the name of a definition. Each set and value in a document repeats
/// them.
inline constexpr std::size_t longestName = 256;

/// Characters of a namespace's URI.
inline constexpr std::size_t longestUri = 1024;

/// Properties of a set, with those of its ancestors. Xerces-C takes time in proportion to the cube
/// of them to make a schema's type ready.
inline constexpr std::size_t mostProperties = 512;

/// The same of all sets together. Each set lists what it inherits, so that as many sets as
/// properties would be a square of them.
inline constexpr std::size_t mostPropertiesOfAllSets = 65536;

} // namespace Corvid::MetaMetadata
