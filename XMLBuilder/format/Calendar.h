#pragma once

#include <array>
#include <optional>

namespace Corvid::XMLBuilder {

/// The parts of a time as a file holds them: year, month, day, hour, minute, second, steps of 4 ms.
using TimeParts = std::array<unsigned, 7>;

/// A part of a time that no calendar has.
struct CalendarFault {
    const char* part;
    unsigned number;
};

/// The first part that is wrong, if one is. All zeros are no date either; they mean that the time
/// is not known (SMPTE ST 377-1).
std::optional<CalendarFault> calendarFaultOf(const TimeParts& time) noexcept;

} // namespace Corvid::XMLBuilder
