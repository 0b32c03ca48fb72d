#pragma once

#include "inspection/essence/Stream.h"

#include <string>
#include <vector>

namespace Corvid::Tool {

/// The lines that describe the essence of streams, not printable() yet.
/// @param count   how many streams are alike: their channels are "each".
/// @param labels  whether the labels of coding and container follow.
std::vector<std::string> streamLines(const Inspection::Stream& stream, std::size_t count,
                                     bool labels);

/// "A1, A2, tracks 2001-2002"
std::string trackText(const std::vector<const Inspection::Stream*>& streams);

/// "25 fps", "29.97 fps (30000/1001)"
std::string frameRateText(const Types::Rational& rate);

} // namespace Corvid::Tool
