#pragma once

namespace Corvid::XMLUtils {

/// How the elements of a document are laid out in lines.
enum class Layout {
    indented, ///< one element per line, two spaces per level (40 levels at the most), LF
    compact,  ///< no character that the document does not hold
};

} // namespace Corvid::XMLUtils
