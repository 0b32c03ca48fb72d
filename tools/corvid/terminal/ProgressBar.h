#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvid::Tool {

/// "[#######.............] 35 of 100  clip.mxf": how far the work is, in less than a line.
/// @param done     what is finished of `total`.
/// @param what     is at work; cut at its front where the line is too short.
/// @param columns  of the line.
std::string progressBar(std::size_t done, std::size_t total, std::string_view what,
                        std::size_t columns);

/// The columns of the terminal that standard error is, or what most have.
std::size_t terminalColumns();

} // namespace Corvid::Tool
