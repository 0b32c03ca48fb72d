#include "host/mxf/Warnings.h"

#include "host/types/IdentifierTypes.h"

namespace Corvid::mxf {

WarningSink::~WarningSink() = default;

std::string Warning::message() const {
    std::string line;
    if (offset) {
        line += "byte " + std::to_string(*offset) + ": ";
    }
    if (!set.empty()) {
        line += set + ": ";
    }
    if (localTag) {
        line += Platform::toUtf8(Types::LocalTag(*localTag).toString(Types::dottedHexadecimal));
        line += property.empty() ? ": " : " " + property + ": ";
    }
    return line + text;
}

} // namespace Corvid::mxf
