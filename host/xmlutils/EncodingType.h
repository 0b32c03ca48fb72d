#pragma once

#include "Corvid_XMLUtils/Export.h"

namespace Corvid::XMLUtils {

/// How the text of a document is encoded.
enum class EncodingType {
    utf8 = 0,    ///< UTF-8, without byte order mark
    utf16 = 1,   ///< UTF-16 in the machine's byte order, with byte order mark
    utf16LE = 2, ///< UTF-16, low byte first, without byte order mark
    utf16BE = 3, ///< UTF-16, high byte first, without byte order mark
};

/// The name of the encoding as an XML declaration gives it.
/// @throws InvalidArgument  the value is none of the enumerators.
CORVID_XMLUTILS_EXPORT const char* nameOf(EncodingType encoding);

} // namespace Corvid::XMLUtils
