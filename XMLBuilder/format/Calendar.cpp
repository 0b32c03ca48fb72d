#include "XMLBuilder/format/Calendar.h"

namespace Corvid::XMLBuilder {

namespace {

bool isLeapYear(unsigned year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

} // namespace

std::optional<CalendarFault> calendarFaultOf(const TimeParts& time) noexcept {
    static constexpr std::array<unsigned, 12> days = {31, 28, 31, 30, 31, 30,
                                                      31, 31, 30, 31, 30, 31};
    const auto [year, month, day, hour, minute, second, steps] = time;
    if (month < 1 || month > days.size()) {
        return CalendarFault{"month", month};
    }
    if (day < 1 || day > days[month - 1] + (month == 2 && isLeapYear(year) ? 1 : 0)) {
        return CalendarFault{"day", day};
    }
    if (hour > 23) {
        return CalendarFault{"hour", hour};
    }
    if (minute > 59) {
        return CalendarFault{"minute", minute};
    }
    if (second > 59) {
        return CalendarFault{"second", second};
    }
    if (steps > 249) {
        return CalendarFault{"4 ms steps of a second:", steps};
    }
    return std::nullopt;
}

} // namespace Corvid::XMLBuilder
