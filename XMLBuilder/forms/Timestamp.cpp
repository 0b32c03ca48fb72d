#include "XMLBuilder/format/Calendar.h"
#include "XMLBuilder/forms/Compound.h"

namespace Corvid::XMLBuilder::ValueForms {

namespace {

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
    const TimeParts parts = {partOf(node, u"Year"),   partOf(node, u"Month"),
                             partOf(node, u"Day"),    partOf(node, u"Hour"),
                             partOf(node, u"Minute"), partOf(node, u"Second"),
                             partOf(node, u"mSec4")};
    const auto fault = calendarFaultOf(parts);
    if (fault && parts != TimeParts{}) {
        time.mistakes().doubt(node, std::string("no calendar has ") + fault->part + " " +
                                        std::to_string(fault->number));
    }
}

} // namespace Corvid::XMLBuilder::ValueForms
