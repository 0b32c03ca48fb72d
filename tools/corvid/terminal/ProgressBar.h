#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Corvid::Tool {

/// "[#######.............] 35 of 100  12.3/s, 0:05 left  clip.mxf": how far the work is, in less
/// than a line.
/// @param done     what is finished of `total`; without that, there is no bar.
/// @param pace     as paceText(); may be empty.
/// @param what     is at work; cut at its front where the line is too short.
/// @param columns  of the line.
std::string progressBar(std::size_t done, std::optional<std::size_t> total, std::string_view pace,
                        std::string_view what, std::size_t columns);

/// "12.3/s, 1:02:05 left"
std::string paceText(std::size_t done, std::optional<std::size_t> total, double seconds);

/// The columns of the terminal that standard error is, or what most have.
std::size_t terminalColumns();

} // namespace Corvid::Tool
