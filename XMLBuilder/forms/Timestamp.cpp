#include "XMLBuilder/forms/Compound.h"

namespace Corvid::XMLBuilder::ValueForms {

namespace {

bool isLeapYear(unsigned year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

/// The number in a part, which is there and holds one.
unsigned partOf(const DocumentNode& time, std::u16string_view local) {
    const DocumentNode* part = firstElement(time);
    while (part->local != local) {
        part = nextElement(*part);
    }
    unsigned number = 0;
    const Content content(*part);
    for (const char16_t unit : content.text()) {
        number = unit >= u'0' && unit <= u'9' ? 10 * number + (unit - u'0') : number;
    }
    return number;
}

} // namespace

void Compound::doubt(ValueCheck& time, As<Types::Timestamp>) {
    const DocumentNode& node = time.node();
    const unsigned year = partOf(node, u"Year");
    const unsigned month = partOf(node, u"Month");
    const unsigned day = partOf(node, u"Day");
    const unsigned hour = partOf(node, u"Hour");
    const unsigned minute = partOf(node, u"Minute");
    const unsigned second = partOf(node, u"Second");
    const unsigned steps = partOf(node, u"mSec4");
    if (year + month + day + hour + minute + second + steps == 0) {
        return;
    }
    static constexpr std::array<unsigned, 12> days = {31, 28, 31, 30, 31, 30,
                                                      31, 31, 30, 31, 30, 31};
    const auto add = [&](const char* what, unsigned number) {
        time.mistakes().doubt(node, std::string("no calendar has ") + what + " " +
                                        std::to_string(number));
    };
    if (month < 1 || month > days.size()) {
        add("month", month);
    } else if (day < 1 || day > days[month - 1] + (month == 2 && isLeapYear(year) ? 1 : 0)) {
        add("day", day);
    } else if (hour > 23) {
        add("hour", hour);
    } else if (minute > 59) {
        add("minute", minute);
    } else if (second > 59) {
        add("second", second);
    } else if (steps > 249) {
        add("4 ms steps of a second:", steps);
    }
}

} // namespace Corvid::XMLBuilder::ValueForms
