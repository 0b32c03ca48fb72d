#pragma once

namespace Corvid::XMLBuilder {

/// What an empty element means, or an empty part of a value.
enum class EmptyParts : unsigned char {
    missing, ///< nothing: no value is made, or a value that needs the part is refused
    values,  ///< text or bytes of no length
};

} // namespace Corvid::XMLBuilder
