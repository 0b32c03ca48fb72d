#pragma once

namespace Corvid::MetaMetadata::AttributeRequiredStatus {

/// Who must write or understand a property of a set (SMPTE ST 377-1).
enum Status : unsigned int {
    required = 0,        ///< every file has it
    encoderRequired = 1, ///< an encoder must write it
    decoderRequired = 2, ///< a decoder must understand it where it is present
    bestEffort =
        3,        ///< an encoder writes it as well as it knows, and a distinguished value otherwise
    optional = 4, ///< it may be left out
};

/// What texts of definitions call each status, in the order of their numbers.
inline constexpr const char* names[] = {"required", "encoder-required", "decoder-required",
                                        "best-effort", "optional"};

} // namespace Corvid::MetaMetadata::AttributeRequiredStatus
