#include "host/mxf/Warnings.h"

#include "host/types/IdentifierTypes.h"

namespace Corvid::mxf {

namespace WarningKinds {
#define CORVID_WARNING(name, code, scope, summary)                                                 \
    const WarningKind name{code, WarningScope::scope, summary};
#include "host/mxf/WarningKinds.def"
} // namespace WarningKinds

WarningSink::~WarningSink() = default;

std::string Warning::message(std::size_t more) const {
    std::string line;
    if (offset) {
        line += "byte " + std::to_string(*offset) + ": ";
    }
    if (!set.empty()) {
        line += "set " + set + ": ";
    }
    if (localTag || !property.empty()) {
        line += "property";
        if (localTag) {
            const Types::LocalTag tag(*localTag);
            line += " " + Platform::toUtf8(tag.toString(Types::dottedHexadecimal));
        }
        line += property.empty() ? ": " : " " + property + ": ";
    }
    line += text;
    if (more != 0) {
        line += ", and " + std::to_string(more) + " more";
    }
    return line + " [" + kind->code + "]";
}

} // namespace Corvid::mxf
