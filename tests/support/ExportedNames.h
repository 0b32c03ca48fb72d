#pragma once

#include <string>
#include <vector>

namespace Corvid::Testing {

/// The names, without arguments, of what a shared library defines for others; an overloaded one as
/// often as it is there. Without instantiations of templates, which any library may have as well.
/// @param library  its path.
std::vector<std::string> exportedNames(const std::string& library);

} // namespace Corvid::Testing
