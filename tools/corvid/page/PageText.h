#pragma once

#include <cstddef>

namespace Corvid::Tool {

/// The bytes of report/bundle/page.html. The build makes their definition (cmake/EmbedPage.cmake).
extern const unsigned char pageText[];
extern const std::size_t pageTextSize;

} // namespace Corvid::Tool
