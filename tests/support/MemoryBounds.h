#pragma once

#include <cstddef>

/// How much memory whatever input may take: so many times its size in bytes, and a constant for
/// what Xerces-C and XQilla begin a document with. A process of the command has its start besides.
/// docs/limits.md has the same figures.
namespace Corvid::Testing::MemoryBounds {

inline constexpr std::size_t fileToMetadata = 64;
inline constexpr std::size_t fileToText = 320;
inline constexpr std::size_t fileToJson = 96;
inline constexpr std::size_t fileToPage = 128;
inline constexpr std::size_t fileToAnswers = 192;
inline constexpr std::size_t fileToDocument = 640;
inline constexpr std::size_t check = 560;
inline constexpr std::size_t documentToMetadata = 96;
inline constexpr std::size_t constant = std::size_t{8} << 20;
/// Sizes from which on the bounds are tested; less is a matter of the constant.
inline constexpr std::size_t sizes[] = {1024, 4096, 16384, 65536};

} // namespace Corvid::Testing::MemoryBounds
