#pragma once

#include "inspection/essence/Timecode.h"

namespace Corvid::Inspection {

/// When a clip begins and how long it is.
struct Timing {
    /// The timecode of the first frame, and where it is from.
    struct Start {
        Timecode timecode;
        std::string source; ///< "material package", `tape "A12"`
        /// Frames of the timecode in a second; nothing where that is not certain.
        std::optional<Types::Rational> rate;
    };
    /// A length in edit units, or that it is not stated.
    struct Length {
        std::optional<Types::int64> units;
        std::optional<Types::Rational> rate; ///< units in a second
    };

    std::optional<Start> start;
    Length clip;                        ///< of the material package, or what is there instead
    std::optional<Length> essence;      ///< of the essence in the file, where it differs
    std::optional<Types::int64> frames; ///< of the clip, as its timecode counts them
};

/// The source clips from a clip to a package with a timecode: longer chains go in circles.
constexpr int longestChain = 16;
/// The tracks of a clip whose source clips are followed.
constexpr std::size_t mostTracks = 32;

} // namespace Corvid::Inspection
