#pragma once

#include "host/base/Hex.h"
#include "host/types/IdentifierTypes.h"

#include <string>

namespace Corvid::Inspection {

/// "urn:smpte:umid:060a2b34.01010105...": groups of four bytes (SMPTE ST 2029).
inline std::string umidUrn(const Types::UMID32& umid) {
    std::string text = "urn:smpte:umid:";
    for (std::size_t i = 0; i != umid.bytes().size(); i += 4) {
        text +=
            (i == 0 ? "" : ".") + Hex::encoded<std::string>(umid.bytes().data() + i, 4, Hex::lower);
    }
    return text;
}

/// "urn:uuid:470b1fe6-136b-..." (RFC 4122).
/// @param bytes  16 of them. Borrowed.
inline std::string uuidUrn(const Types::u8* bytes) {
    std::string text = "urn:uuid:";
    for (std::size_t i = 0; i != 16; ++i) {
        text += (i == 4 || i == 6 || i == 8 || i == 10 ? "-" : "") +
                Hex::encoded<std::string>(bytes + i, 1, Hex::lower);
    }
    return text;
}

} // namespace Corvid::Inspection
