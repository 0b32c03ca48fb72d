#pragma once

#include "Corvid/Export.h"
#include "host/base/Text.h"

#include <cstddef>

namespace Corvid::Types {

/// Chooses the text form of an identifier.
enum StringRepresentationEncodingType : int {
    dottedHexadecimal =
        0, ///< lower-case pairs of hexadecimal digits joined by full stops: 06.0e.2b
};

/// Writes bytes as dotted hexadecimal text.
CORVID_EXPORT Utf16Text toDottedHexadecimal(const unsigned char* bytes, std::size_t size);

/// Reads dotted hexadecimal text of exactly size bytes, in either case.
/// @throws InvalidFormat  the text is no such text; it is quoted.
CORVID_EXPORT void fromDottedHexadecimal(const unsigned short* text, unsigned char* bytes,
                                         std::size_t size);

} // namespace Corvid::Types
