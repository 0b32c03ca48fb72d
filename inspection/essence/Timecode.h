#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/types/Rational.h"

#include <optional>
#include <string>

namespace Corvid::Inspection {

/// A number of frames, as timecode counts them (SMPTE ST 12-1).
struct Timecode {
    Types::int64 start = 0; ///< in frames
    int framesPerSecond = 0;
    bool dropFrame = false;
};

/// "01:00:00:00", with ";" before the frames of drop-frame timecode (SMPTE ST 12-1).
CORVID_INSPECTION_EXPORT std::string timecodeText(const Timecode& timecode);

/// True for a rate that can be counted with: both of its numbers are above 0.
CORVID_INSPECTION_EXPORT bool isRate(const Types::Rational& rate);

/// Seconds of so many edit units; nothing where the rate is none.
CORVID_INSPECTION_EXPORT std::optional<double> seconds(Types::int64 editUnits,
                                                       const std::optional<Types::Rational>& rate);

/// Edit units of another rate that take as long, rounded down; nothing where a rate is none or the
/// number is too great.
CORVID_INSPECTION_EXPORT std::optional<Types::int64> converted(Types::int64 editUnits,
                                                               const Types::Rational& from,
                                                               const Types::Rational& to);

/// The true rate of timecode frames: that of its track where it is a frame rate, else what the
/// count of frames leaves no doubt of; nothing for 24, 30 or 60 frames that may be a thousandth
/// slower.
CORVID_INSPECTION_EXPORT std::optional<Types::Rational> frameRate(
    const Timecode& timecode, const std::optional<Types::Rational>& trackRate);

} // namespace Corvid::Inspection
