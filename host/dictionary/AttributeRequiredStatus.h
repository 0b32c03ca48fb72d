#pragma once

namespace Corvid::MetaMetadata::AttributeRequiredStatus {

/// Who must write or understand a property of a set (SMPTE ST 377-1).
enum Status : unsigned int {
    required = 0,        ///< every file has it
    encoderRequired = 1, ///< an encoder must write it
    decoderRequired = 2, ///< a decoder must understand it where it stands
    bestEffort =
        3,        ///< an encoder writes it as well as it knows, and a distinguished value otherwise
    optional = 4, ///< it may be left out
};

} // namespace Corvid::MetaMetadata::AttributeRequiredStatus
