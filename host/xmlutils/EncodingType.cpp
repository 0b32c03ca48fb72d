#include "host/xmlutils/EncodingType.h"

#include "host/base/Exceptions.h"

#include <string>

namespace Corvid::XMLUtils {

const char* nameOf(EncodingType encoding) {
    switch (encoding) {
    case EncodingType::utf8:
        return "UTF-8";
    case EncodingType::utf16:
        return "UTF-16";
    case EncodingType::utf16LE:
        return "UTF-16LE";
    case EncodingType::utf16BE:
        return "UTF-16BE";
    }
    throw Exceptions::InvalidArgument("encoding type " +
                                          std::to_string(static_cast<int>(encoding)) +
                                          " is unknown, expected 0 to 3",
                                      CORVID_HERE);
}

} // namespace Corvid::XMLUtils
