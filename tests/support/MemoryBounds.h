#pragma once

#include <cstddef>

/// How much memory whatever input may take: so many times its size in bytes, and a constant for the
/// tables and blocks that Xerces-C and XQilla begin with. docs/limits.md tells the same figures.
namespace Corvid::Testing::MemoryBounds {

inline constexpr std::size_t fileToMetadata = 64;
inline constexpr std::size_t fileToDocument = 640;
inline constexpr std::size_t check = 800;
inline constexpr std::size_t documentToMetadata = 96;
inline constexpr std::size_t constant = std::size_t{8} << 20;

} // namespace Corvid::Testing::MemoryBounds
